#include "sim/chip/ChipTypes.h"

#include <numeric>

namespace Sim {

U32 StageSlices::totalNarrow() const {
   return std::accumulate( narrowEntries.begin(), narrowEntries.end(), U32{ 0 } );
}

U32 StageSlices::totalWide() const {
   U32 wide = 0;
   for ( U32 n : narrowEntries ) {
      wide += n / 2;
   }
   return wide;
}

namespace {

struct QualInfo {
   std::string_view name;
   U8 width;
};

// Indexed by QualId; widths follow the SDK's argument types for each qualifier.
constexpr std::array<QualInfo, kQualCount> kQualInfo{ {
    { "SrcIp", 4 },
    { "DstIp", 4 },
    { "SrcIp6", 16 },
    { "DstIp6", 16 },
    { "SrcIp6High", 16 },
    { "DstIp6High", 16 },
    { "SrcMac", 6 },
    { "DstMac", 6 },
    { "EtherType", 2 },
    { "IpProtocol", 1 },
    { "ExtensionHeaderType", 1 },
    { "L4SrcPort", 2 },
    { "L4DstPort", 2 },
    { "DSCP", 1 },
    { "Ip6TrafficClass", 1 },
    { "Ttl", 1 },
    { "Ip6HopLimit", 1 },
    { "TcpControl", 1 },
    { "OuterVlanId", 2 },
    { "ForwardingVlanId", 2 },
    { "EgressClassL3Interface", 4 },
    { "VxlanNetworkId", 4 },
    { "HiGig", 1 },
    { "L3Routable", 1 },
    { "MyStationHit", 1 },
    { "IngressStpState", 1 },
    { "OutPort", 4 },
    { "IpFrag", 1 },
    { "IpType", 1 },
    { "InterfaceClassPort", 4 },
    { "InterfaceClassL2", 4 },
    { "InterfaceClassL3", 4 },
    { "SrcClassField", 4 },
    { "DstClassField", 4 },
    { "DstClassL2", 4 },
    { "EtherTypeClass", 4 },
    { "IpProtocolClass", 4 },
    { "L4SrcPortClass", 4 },
    { "L4DstPortClass", 4 },
    { "DstIpClassMsbNibble", 4 },
    { "DstIp6ClassMsbNibble", 4 },
} };

constexpr std::array<std::string_view, kActionCount> kActionNames{
    "Drop",
    "CopyToCpu",
    "SwitchToCpuCancel",
    "CosQCpuNew",
    "PrioIntNew",
    "EgressMask",
    "MirrorIngressIndex",
    "ClassSourceSet",
    "HgTrunkResolveCancel",
    "TrunkLoadBalanceCancel",
};

}  // namespace

std::string_view stageName( Stage s ) {
   switch ( s ) {
      case Stage::Vfp:
         return "VFP";
      case Stage::Ifp:
         return "IFP";
      case Stage::Efp:
         return "EFP";
   }
   return "?";
}

std::string_view statusName( Status s ) {
   switch ( s ) {
      case Status::Ok:
         return "Ok";
      case Status::NotFound:
         return "NotFound";
      case Status::Exists:
         return "Exists";
      case Status::Param:
         return "Param";
      case Status::Resource:
         return "Resource";
      case Status::Busy:
         return "Busy";
      case Status::Conflict:
         return "Conflict";
      case Status::NotInstalled:
         return "NotInstalled";
   }
   return "?";
}

U8 qualWidth( QualId q ) {
   return kQualInfo[static_cast<std::size_t>( q )].width;
}

std::string_view qualName( QualId q ) {
   return kQualInfo[static_cast<std::size_t>( q )].name;
}

std::string_view actionName( ActionId a ) {
   return kActionNames[static_cast<std::size_t>( a )];
}

bool isPortAction( ActionId a ) {
   return a == ActionId::EgressMask;
}

namespace {

U64 bytesToU64( const std::array<U8, 16>& bytes, U8 width ) {
   U64 v = 0;
   for ( U8 i = 0; i < width && i < 8; ++i ) {
      v = ( v << 8 ) | bytes[i];
   }
   return v;
}

}  // namespace

U64 QualValue::dataU64() const {
   return bytesToU64( data, width );
}

U64 QualValue::maskU64() const {
   return bytesToU64( mask, width );
}

QualValue QualValue::fromU64( U8 width, U64 d, U64 m ) {
   QualValue v;
   v.width = width;
   for ( U8 i = 0; i < width && i < 8; ++i ) {
      const unsigned shift = 8u * ( width - 1u - i );
      v.data[i] = static_cast<U8>( d >> shift );
      v.mask[i] = static_cast<U8>( m >> shift );
   }
   return v;
}

}  // namespace Sim
