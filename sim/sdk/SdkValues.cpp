#include "sim/sdk/SdkValues.h"

#include <array>
#include <utility>

namespace Sim::SdkValues {

namespace {

// One table per enumeration: the model's value and the SDK build's number for it.
template <typename Model, typename Sdk, std::size_t N>
using Table = std::array<std::pair<Model, Sdk>, N>;

template <typename Model, typename Sdk, std::size_t N>
Sdk toSdk( const Table<Model, Sdk, N>& t, Model m ) {
   for ( const auto& [model, sdk] : t ) {
      if ( model == m ) {
         return sdk;
      }
   }
   // Every table lists every model value; the tests walk them all.
   return Sdk{ -1 };
}

template <typename Model, typename Sdk, std::size_t N>
std::optional<Model> toModel( const Table<Model, Sdk, N>& t, Sdk s ) {
   for ( const auto& [model, sdk] : t ) {
      if ( sdk == s ) {
         return model;
      }
   }
   return std::nullopt;
}

constexpr Table<ActionId, bcm_field_action_t, kActionCount> kActions{ {
    { ActionId::Drop, bcm_field_action_t{ 20 } },
    { ActionId::CopyToCpu, bcm_field_action_t{ 12 } },
    { ActionId::SwitchToCpuCancel, bcm_field_action_t{ 13 } },
    { ActionId::CosQCpuNew, bcm_field_action_t{ 3 } },
    { ActionId::PrioIntNew, bcm_field_action_t{ 29 } },
    { ActionId::EgressMask, bcm_field_action_t{ 36 } },
    { ActionId::MirrorIngressIndex, bcm_field_action_t{ 61 } },
    { ActionId::ClassSourceSet, bcm_field_action_t{ 87 } },
    { ActionId::HgTrunkResolveCancel, bcm_field_action_t{ 118 } },
    { ActionId::TrunkLoadBalanceCancel, bcm_field_action_t{ 119 } },
} };

constexpr Table<IpFrag, bcm_field_IpFrag_t, 5> kIpFrags{ {
    { IpFrag::Any, bcm_field_IpFrag_t{ 0 } },
    { IpFrag::Non, bcm_field_IpFrag_t{ 1 } },
    { IpFrag::First, bcm_field_IpFrag_t{ 2 } },
    { IpFrag::NonOrFirst, bcm_field_IpFrag_t{ 3 } },
    { IpFrag::NotFirst, bcm_field_IpFrag_t{ 4 } },
} };

constexpr Table<IpType, bcm_field_IpType_t, 8> kIpTypes{ {
    { IpType::Any, bcm_field_IpType_t{ 0 } },
    { IpType::NonIp, bcm_field_IpType_t{ 1 } },
    { IpType::Ip, bcm_field_IpType_t{ 3 } },
    { IpType::Ipv4Any, bcm_field_IpType_t{ 5 } },
    { IpType::Ipv6, bcm_field_IpType_t{ 9 } },
    { IpType::Ipv6NoExtHdr, bcm_field_IpType_t{ 10 } },
    { IpType::Ipv6OneExtHdr, bcm_field_IpType_t{ 11 } },
    { IpType::Arp, bcm_field_IpType_t{ 15 } },
} };

constexpr Table<StpState, bcm_stg_stp_t, 5> kStpStates{ {
    { StpState::Disable, bcm_stg_stp_t{ 0 } },
    { StpState::Block, bcm_stg_stp_t{ 2 } },
    { StpState::Listen, bcm_stg_stp_t{ 3 } },
    { StpState::Learn, bcm_stg_stp_t{ 4 } },
    { StpState::Forward, bcm_stg_stp_t{ 5 } },
} };

constexpr Table<RangeType, bcm_range_type_t, 3> kRangeTypes{ {
    { RangeType::SrcPort, bcm_range_type_t{ 0 } },
    { RangeType::DstPort, bcm_range_type_t{ 1 } },
    { RangeType::IpLength, bcm_range_type_t{ 4 } },
} };

constexpr Table<PortClassKind, bcm_port_class_t, kPortClassKinds> kPortClasses{ {
    { PortClassKind::FieldIngress, bcm_port_class_t{ 3 } },
    { PortClassKind::FieldEgress, bcm_port_class_t{ 4 } },
} };

constexpr std::array<std::pair<int, const char*>, 19> kErrorTexts{ {
    { kNone, "Ok" },
    { kInternal, "Internal error" },
    { kMemory, "Out of memory" },
    { kUnit, "Invalid unit" },
    { kParam, "Invalid parameter" },
    { kEmpty, "Table empty" },
    { kFull, "Table full" },
    { kNotFound, "Entry not found" },
    { kExists, "Entry exists" },
    { kTimeout, "Operation timed out" },
    { kBusy, "Operation still running" },
    { kFail, "Operation failed" },
    { kDisabled, "Operation disabled" },
    { kBadId, "Invalid identifier" },
    { kResource, "No resources for operation" },
    { kConfig, "Invalid configuration" },
    { kUnavail, "Feature unavailable" },
    { kInit, "Feature not initialized" },
    { kPort, "Invalid port" },
} };

}  // namespace

const char* errorText( int rc ) {
   for ( const auto& [code, text] : kErrorTexts ) {
      if ( code == rc ) {
         return text;
      }
   }
   return "Unknown error";
}

int codeOf( Status s ) {
   switch ( s ) {
      case Status::Ok:
         return kNone;
      case Status::NotFound:
         return kNotFound;
      case Status::Exists:
         return kExists;
      case Status::Param:
         return kParam;
      case Status::Resource:
         return kResource;
      case Status::Busy:
         return kBusy;
      case Status::Conflict:
         return kConfig;
      case Status::NotInstalled:
         return kDisabled;
   }
   return kInternal;
}

U32 rangeFlagsOf( RangeType t ) {
   switch ( t ) {
      case RangeType::SrcPort:
         return kRangeFlagSrcPort;
      case RangeType::DstPort:
         return kRangeFlagDstPort;
      case RangeType::IpLength:
         return kRangeFlagPacketLength;
   }
   return 0;
}

bcm_field_action_t sdkAction( ActionId a ) {
   return toSdk( kActions, a );
}
std::optional<ActionId> actionOf( bcm_field_action_t a ) {
   return toModel( kActions, a );
}

bcm_field_IpFrag_t sdkIpFrag( IpFrag f ) {
   return toSdk( kIpFrags, f );
}
std::optional<IpFrag> ipFragOf( bcm_field_IpFrag_t f ) {
   return toModel( kIpFrags, f );
}

bcm_field_IpType_t sdkIpType( IpType t ) {
   return toSdk( kIpTypes, t );
}
std::optional<IpType> ipTypeOf( bcm_field_IpType_t t ) {
   return toModel( kIpTypes, t );
}

bcm_stg_stp_t sdkStpState( StpState s ) {
   return toSdk( kStpStates, s );
}
std::optional<StpState> stpStateOf( bcm_stg_stp_t s ) {
   return toModel( kStpStates, s );
}

bcm_range_type_t sdkRangeType( RangeType t ) {
   return toSdk( kRangeTypes, t );
}
std::optional<RangeType> rangeTypeOf( bcm_range_type_t t ) {
   return toModel( kRangeTypes, t );
}

bcm_port_class_t sdkPortClass( PortClassKind k ) {
   return toSdk( kPortClasses, k );
}
std::optional<PortClassKind> portClassOf( bcm_port_class_t c ) {
   return toModel( kPortClasses, c );
}

}  // namespace Sim::SdkValues
