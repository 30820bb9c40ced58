// The SDK decorator: generic records for every member, hand-written ones for the calls that
// take arrays (the UDF data calls and the range checker list), whose length is an argument.
#include "sim/record/RecordingSdk.h"

#include <cstdio>
#include <cstdlib>

namespace Sim {

namespace {

// UDF windows are a few bytes and an entry takes a few range checkers; a replay holds this
// many on its stack, and a recorded call that asks for more stops the process.
constexpr std::size_t kMaxBytes = 256;
constexpr int kMaxRanges = 64;

void checkFits( const char* call, std::size_t n, std::size_t most ) {
   if ( n > most ) {
      std::fprintf( stderr,
                    "call recording: %s asks for %zu items, more than a replay holds (%zu)\n", call,
                    n, most );
      std::abort();
   }
}

// `n` bytes, zeros for a null pointer: the replay reads `n` bytes either way.
void putBytes( CallLog& log, const U8* bytes, U16 n ) {
   for ( U16 i = 0; i < n; ++i ) {
      log.put( bytes ? bytes[i] : U8( 0 ) );
   }
}

U8 presence( const void* a, const void* b, const void* c ) {
   return static_cast<U8>( ( a ? 1 : 0 ) | ( b ? 2 : 0 ) | ( c ? 4 : 0 ) );
}

template <class T>
T* present( U8 flags, U8 bit, T* p ) {
   return ( flags & bit ) ? p : nullptr;
}

// The head of a hand-written record: its replay, then unit, entry and a third number.
void putHead( CallLog& log, ReplayFn fn, int unit, bcm_field_entry_t entry, int id ) {
   log.put( fn );
   log.put( unit );
   log.put( entry );
   log.put( id );
}

// Writes the answer in its reserved room and hands it on.
int answered( CallLog& log, std::size_t at, int rc ) {
   log.putAt( at, &rc, sizeof rc );
   return rc;
}

struct Head {
   explicit Head( CallReader& in )
       : unit( in.read<int>() ), entry( in.read<bcm_field_entry_t>() ), id( in.read<int>() ) {}
   int unit;
   bcm_field_entry_t entry;
   int id;
};

void replayQualifyData( CallReader& in ) {
   const Head h( in );
   const U16 length = in.read<U16>();
   const U8* data = in.take( length );
   const U8* mask = in.take( length );
   const int rc =
       in.target().sdk->bcm_field_qualify_data( h.unit, h.entry, h.id, data, mask, length );
   record::Result<int>::check( in, rc, "bcm_field_qualify_data" );
}

void replayQualifyUdf( CallReader& in ) {
   const Head h( in );
   const U16 length = in.read<U16>();
   const U8* data = in.take( length );
   const U8* mask = in.take( length );
   const int rc =
       in.target().sdk->bcm_field_qualify_udf( h.unit, h.entry, h.id, length, data, mask );
   record::Result<int>::check( in, rc, "bcm_field_qualify_udf" );
}

template <bool Udf>
void replayDataGet( CallReader& in ) {
   const Head h( in );
   const U16 maxLength = in.read<U16>();
   const U8 flags = in.read<U8>();
   U8 data[kMaxBytes];
   U8 mask[kMaxBytes];
   U16 actual = 0;
   Shim::Sdk& sdk = *in.target().sdk;
   const int rc = Udf ? sdk.bcm_field_qualify_udf_get(
                            h.unit, h.entry, h.id, maxLength, present( flags, 1, data ),
                            present( flags, 2, mask ), present( flags, 4, &actual ) )
                      : sdk.bcm_field_qualify_data_get(
                            h.unit, h.entry, h.id, maxLength, present( flags, 1, data ),
                            present( flags, 2, mask ), present( flags, 4, &actual ) );
   record::Result<int>::check( in, rc,
                               Udf ? "bcm_field_qualify_udf_get" : "bcm_field_qualify_data_get" );
}

void replayRangeCheckGet( CallReader& in ) {
   const Head h( in );
   const U8 flags = in.read<U8>();
   bcm_field_range_t ranges[kMaxRanges];
   int inverts[kMaxRanges];
   int count = 0;
   const int rc = in.target().sdk->bcm_field_qualify_RangeCheck_get(
       h.unit, h.entry, h.id, present( flags, 1, ranges ), present( flags, 2, inverts ),
       present( flags, 4, &count ) );
   record::Result<int>::check( in, rc, "bcm_field_qualify_RangeCheck_get" );
}

}  // namespace

int RecordingSdk::bcm_field_qualify_data( int unit, bcm_field_entry_t entry, int qualId,
                                          const U8* data, const U8* mask, U16 length ) {
   if ( !recorder_.recording() ) {
      return inner_.bcm_field_qualify_data( unit, entry, qualId, data, mask, length );
   }
   CallLog& log = recorder_.log();
   putHead( log, &replayQualifyData, unit, entry, qualId );
   log.put( length );
   putBytes( log, data, length );
   putBytes( log, mask, length );
   const std::size_t at = log.reserve( sizeof( int ) );
   log.callDone();
   return answered( log, at,
                    inner_.bcm_field_qualify_data( unit, entry, qualId, data, mask, length ) );
}

int RecordingSdk::bcm_field_qualify_udf( int unit, bcm_field_entry_t entry, int udfId, U16 length,
                                         const U8* data, const U8* mask ) {
   if ( !recorder_.recording() ) {
      return inner_.bcm_field_qualify_udf( unit, entry, udfId, length, data, mask );
   }
   CallLog& log = recorder_.log();
   putHead( log, &replayQualifyUdf, unit, entry, udfId );
   log.put( length );
   putBytes( log, data, length );
   putBytes( log, mask, length );
   const std::size_t at = log.reserve( sizeof( int ) );
   log.callDone();
   return answered( log, at,
                    inner_.bcm_field_qualify_udf( unit, entry, udfId, length, data, mask ) );
}

int RecordingSdk::bcm_field_qualify_data_get( int unit, bcm_field_entry_t entry, int qualId,
                                              U16 maxLength, U8* data, U8* mask,
                                              U16* actualLength ) {
   if ( !recorder_.recording() ) {
      return inner_.bcm_field_qualify_data_get( unit, entry, qualId, maxLength, data, mask,
                                                actualLength );
   }
   checkFits( "bcm_field_qualify_data_get", maxLength, kMaxBytes );
   CallLog& log = recorder_.log();
   putHead( log, &replayDataGet<false>, unit, entry, qualId );
   log.put( maxLength );
   log.put( presence( data, mask, actualLength ) );
   const std::size_t at = log.reserve( sizeof( int ) );
   log.callDone();
   return answered( log, at,
                    inner_.bcm_field_qualify_data_get( unit, entry, qualId, maxLength, data, mask,
                                                       actualLength ) );
}

int RecordingSdk::bcm_field_qualify_udf_get( int unit, bcm_field_entry_t entry, int udfId,
                                             U16 maxLength, U8* data, U8* mask,
                                             U16* actualLength ) {
   if ( !recorder_.recording() ) {
      return inner_.bcm_field_qualify_udf_get( unit, entry, udfId, maxLength, data, mask,
                                               actualLength );
   }
   checkFits( "bcm_field_qualify_udf_get", maxLength, kMaxBytes );
   CallLog& log = recorder_.log();
   putHead( log, &replayDataGet<true>, unit, entry, udfId );
   log.put( maxLength );
   log.put( presence( data, mask, actualLength ) );
   const std::size_t at = log.reserve( sizeof( int ) );
   log.callDone();
   return answered( log, at,
                    inner_.bcm_field_qualify_udf_get( unit, entry, udfId, maxLength, data, mask,
                                                      actualLength ) );
}

int RecordingSdk::bcm_field_qualify_RangeCheck_get( int unit, bcm_field_entry_t entry,
                                                    int maxRanges, bcm_field_range_t* ranges,
                                                    int* inverts, int* numRanges ) {
   if ( !recorder_.recording() ) {
      return inner_.bcm_field_qualify_RangeCheck_get( unit, entry, maxRanges, ranges, inverts,
                                                      numRanges );
   }
   checkFits( "bcm_field_qualify_RangeCheck_get",
              static_cast<std::size_t>( maxRanges < 0 ? 0 : maxRanges ), kMaxRanges );
   CallLog& log = recorder_.log();
   putHead( log, &replayRangeCheckGet, unit, entry, maxRanges );
   log.put( presence( ranges, inverts, numRanges ) );
   const std::size_t at = log.reserve( sizeof( int ) );
   log.callDone();
   return answered( log, at,
                    inner_.bcm_field_qualify_RangeCheck_get( unit, entry, maxRanges, ranges,
                                                             inverts, numRanges ) );
}

int RecordingSdk::bcm_field_qualify_SrcIp( int unit, bcm_field_entry_t entry, bcm_ip_t data,
                                           bcm_ip_t mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_SrcIp>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstIp( int unit, bcm_field_entry_t entry, bcm_ip_t data,
                                           bcm_ip_t mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstIp>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_SrcIp6( int unit, bcm_field_entry_t entry,
                                            const bcm_ip6_t& data, const bcm_ip6_t& mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_SrcIp6>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstIp6( int unit, bcm_field_entry_t entry,
                                            const bcm_ip6_t& data, const bcm_ip6_t& mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstIp6>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_SrcIp6High( int unit, bcm_field_entry_t entry,
                                                const bcm_ip6_t& data, const bcm_ip6_t& mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_SrcIp6High>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstIp6High( int unit, bcm_field_entry_t entry,
                                                const bcm_ip6_t& data, const bcm_ip6_t& mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstIp6High>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_SrcMac( int unit, bcm_field_entry_t entry,
                                            const bcm_mac_t& data, const bcm_mac_t& mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_SrcMac>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstMac( int unit, bcm_field_entry_t entry,
                                            const bcm_mac_t& data, const bcm_mac_t& mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstMac>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_EtherType( int unit, bcm_field_entry_t entry, U16 data,
                                               U16 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_EtherType>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_IpProtocol( int unit, bcm_field_entry_t entry, U8 data,
                                                U8 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_IpProtocol>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_ExtensionHeaderType( int unit, bcm_field_entry_t entry, U8 data,
                                                         U8 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_ExtensionHeaderType>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_L4SrcPort( int unit, bcm_field_entry_t entry, U16 data,
                                               U16 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_L4SrcPort>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_L4DstPort( int unit, bcm_field_entry_t entry, U16 data,
                                               U16 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_L4DstPort>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DSCP( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DSCP>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_Ip6TrafficClass( int unit, bcm_field_entry_t entry, U8 data,
                                                     U8 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_Ip6TrafficClass>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_Ttl( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_Ttl>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_Ip6HopLimit( int unit, bcm_field_entry_t entry, U8 data,
                                                 U8 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_Ip6HopLimit>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_TcpControl( int unit, bcm_field_entry_t entry, U8 data,
                                                U8 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_TcpControl>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_OuterVlanId( int unit, bcm_field_entry_t entry, U16 data,
                                                 U16 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_OuterVlanId>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_ForwardingVlanId( int unit, bcm_field_entry_t entry, U16 data,
                                                      U16 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_ForwardingVlanId>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_EgressClassL3Interface( int unit, bcm_field_entry_t entry,
                                                            U32 data, U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_EgressClassL3Interface>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_VxlanNetworkId( int unit, bcm_field_entry_t entry, U32 data,
                                                    U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_VxlanNetworkId>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_HiGig( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_HiGig>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_L3Routable( int unit, bcm_field_entry_t entry, U8 data,
                                                U8 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_L3Routable>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_MyStationHit( int unit, bcm_field_entry_t entry, U8 data,
                                                  U8 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_MyStationHit>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_IngressStpState( int unit, bcm_field_entry_t entry,
                                                     bcm_stg_stp_t state, U8 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_IngressStpState>( unit, entry, state, mask );
}

int RecordingSdk::bcm_field_qualify_InPorts( int unit, bcm_field_entry_t entry, bcm_pbmp_t data,
                                             bcm_pbmp_t mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_InPorts>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_OutPort( int unit, bcm_field_entry_t entry, bcm_port_t data,
                                             bcm_port_t mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_OutPort>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_InterfaceClassPort( int unit, bcm_field_entry_t entry, U32 data,
                                                        U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_InterfaceClassPort>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_InterfaceClassL2( int unit, bcm_field_entry_t entry, U32 data,
                                                      U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_InterfaceClassL2>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_InterfaceClassL3( int unit, bcm_field_entry_t entry, U32 data,
                                                      U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_InterfaceClassL3>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_SrcClassField( int unit, bcm_field_entry_t entry, U32 data,
                                                   U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_SrcClassField>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstClassField( int unit, bcm_field_entry_t entry, U32 data,
                                                   U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstClassField>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstClassL2( int unit, bcm_field_entry_t entry, U32 data,
                                                U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstClassL2>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_EtherTypeClass( int unit, bcm_field_entry_t entry, U32 data,
                                                    U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_EtherTypeClass>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_IpProtocolClass( int unit, bcm_field_entry_t entry, U32 data,
                                                     U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_IpProtocolClass>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_L4SrcPortClass( int unit, bcm_field_entry_t entry, U32 data,
                                                    U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_L4SrcPortClass>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_L4DstPortClass( int unit, bcm_field_entry_t entry, U32 data,
                                                    U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_L4DstPortClass>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstIpClassMsbNibble( int unit, bcm_field_entry_t entry,
                                                         U32 data, U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstIpClassMsbNibble>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstIp6ClassMsbNibble( int unit, bcm_field_entry_t entry,
                                                          U32 data, U32 mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstIp6ClassMsbNibble>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_IpFrag( int unit, bcm_field_entry_t entry,
                                            bcm_field_IpFrag_t frag ) {
   return call<&Shim::Sdk::bcm_field_qualify_IpFrag>( unit, entry, frag );
}

int RecordingSdk::bcm_field_qualify_IpType( int unit, bcm_field_entry_t entry,
                                            bcm_field_IpType_t type ) {
   return call<&Shim::Sdk::bcm_field_qualify_IpType>( unit, entry, type );
}

int RecordingSdk::bcm_field_qualify_SrcIp_get( int unit, bcm_field_entry_t entry, bcm_ip_t* data,
                                               bcm_ip_t* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_SrcIp_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstIp_get( int unit, bcm_field_entry_t entry, bcm_ip_t* data,
                                               bcm_ip_t* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstIp_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_SrcIp6_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                                bcm_ip6_t* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_SrcIp6_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstIp6_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                                bcm_ip6_t* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstIp6_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_SrcIp6High_get( int unit, bcm_field_entry_t entry,
                                                    bcm_ip6_t* data, bcm_ip6_t* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_SrcIp6High_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstIp6High_get( int unit, bcm_field_entry_t entry,
                                                    bcm_ip6_t* data, bcm_ip6_t* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstIp6High_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_SrcMac_get( int unit, bcm_field_entry_t entry, bcm_mac_t* data,
                                                bcm_mac_t* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_SrcMac_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstMac_get( int unit, bcm_field_entry_t entry, bcm_mac_t* data,
                                                bcm_mac_t* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstMac_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_EtherType_get( int unit, bcm_field_entry_t entry, U16* data,
                                                   U16* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_EtherType_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_IpProtocol_get( int unit, bcm_field_entry_t entry, U8* data,
                                                    U8* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_IpProtocol_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_IpProtocolClass_get( int unit, bcm_field_entry_t entry,
                                                         U32* data, U32* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_IpProtocolClass_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_ExtensionHeaderType_get( int unit, bcm_field_entry_t entry,
                                                             U8* data, U8* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_ExtensionHeaderType_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_L4SrcPort_get( int unit, bcm_field_entry_t entry, U16* data,
                                                   U16* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_L4SrcPort_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_L4DstPort_get( int unit, bcm_field_entry_t entry, U16* data,
                                                   U16* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_L4DstPort_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_L4SrcPortClass_get( int unit, bcm_field_entry_t entry,
                                                        U32* data, U32* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_L4SrcPortClass_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_L4DstPortClass_get( int unit, bcm_field_entry_t entry,
                                                        U32* data, U32* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_L4DstPortClass_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DSCP_get( int unit, bcm_field_entry_t entry, U8* data,
                                              U8* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DSCP_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_Ip6TrafficClass_get( int unit, bcm_field_entry_t entry,
                                                         U8* data, U8* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_Ip6TrafficClass_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_Ip6HopLimit_get( int unit, bcm_field_entry_t entry, U8* data,
                                                     U8* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_Ip6HopLimit_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_TcpControl_get( int unit, bcm_field_entry_t entry, U8* data,
                                                    U8* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_TcpControl_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_IpFrag_get( int unit, bcm_field_entry_t entry,
                                                bcm_field_IpFrag_t* frag ) {
   return call<&Shim::Sdk::bcm_field_qualify_IpFrag_get>( unit, entry, frag );
}

int RecordingSdk::bcm_field_qualify_OuterVlanId_get( int unit, bcm_field_entry_t entry, U16* data,
                                                     U16* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_OuterVlanId_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_ForwardingVlanId_get( int unit, bcm_field_entry_t entry,
                                                          U16* data, U16* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_ForwardingVlanId_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_EgressClassL3Interface_get( int unit, bcm_field_entry_t entry,
                                                                U32* data, U32* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_EgressClassL3Interface_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_HiGig_get( int unit, bcm_field_entry_t entry, U8* data,
                                               U8* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_HiGig_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_L3Routable_get( int unit, bcm_field_entry_t entry, U8* data,
                                                    U8* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_L3Routable_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_MyStationHit_get( int unit, bcm_field_entry_t entry, U8* data,
                                                      U8* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_MyStationHit_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_InterfaceClassPort_get( int unit, bcm_field_entry_t entry,
                                                            U32* data, U32* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_InterfaceClassPort_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_InterfaceClassL3_get( int unit, bcm_field_entry_t entry,
                                                          U32* data, U32* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_InterfaceClassL3_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstClassField_get( int unit, bcm_field_entry_t entry, U32* data,
                                                       U32* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstClassField_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstIpClassMsbNibble_get( int unit, bcm_field_entry_t entry,
                                                             U32* data, U32* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstIpClassMsbNibble_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_qualify_DstIp6ClassMsbNibble_get( int unit, bcm_field_entry_t entry,
                                                              U32* data, U32* mask ) {
   return call<&Shim::Sdk::bcm_field_qualify_DstIp6ClassMsbNibble_get>( unit, entry, data, mask );
}

int RecordingSdk::bcm_field_action_add( int unit, bcm_field_entry_t entry,
                                        bcm_field_action_t action, U32 param1, U32 param2 ) {
   return call<&Shim::Sdk::bcm_field_action_add>( unit, entry, action, param1, param2 );
}

int RecordingSdk::bcm_field_action_get( int unit, bcm_field_entry_t entry,
                                        bcm_field_action_t action, U32* param1, U32* param2 ) {
   return call<&Shim::Sdk::bcm_field_action_get>( unit, entry, action, param1, param2 );
}

int RecordingSdk::bcm_field_action_remove( int unit, bcm_field_entry_t entry,
                                           bcm_field_action_t action ) {
   return call<&Shim::Sdk::bcm_field_action_remove>( unit, entry, action );
}

int RecordingSdk::bcm_field_action_ports_add( int unit, bcm_field_entry_t entry,
                                              bcm_field_action_t action, bcm_pbmp_t pbmp ) {
   return call<&Shim::Sdk::bcm_field_action_ports_add>( unit, entry, action, pbmp );
}

int RecordingSdk::bcm_field_action_ports_get( int unit, bcm_field_entry_t entry,
                                              bcm_field_action_t action, bcm_pbmp_t* pbmp ) {
   return call<&Shim::Sdk::bcm_field_action_ports_get>( unit, entry, action, pbmp );
}

bcm_field_action_t RecordingSdk::bcmFieldActionClassSourceSet() {
   return call<&Shim::Sdk::bcmFieldActionClassSourceSet>();
}

bcm_field_action_t RecordingSdk::bcmFieldActionCopyToCpu() {
   return call<&Shim::Sdk::bcmFieldActionCopyToCpu>();
}

bcm_field_action_t RecordingSdk::bcmFieldActionCosQCpuNew() {
   return call<&Shim::Sdk::bcmFieldActionCosQCpuNew>();
}

bcm_field_action_t RecordingSdk::bcmFieldActionDrop() {
   return call<&Shim::Sdk::bcmFieldActionDrop>();
}

bcm_field_action_t RecordingSdk::bcmFieldActionEgressMask() {
   return call<&Shim::Sdk::bcmFieldActionEgressMask>();
}

bcm_field_action_t RecordingSdk::bcmFieldActionMirrorIngressIndex() {
   return call<&Shim::Sdk::bcmFieldActionMirrorIngressIndex>();
}

bcm_field_action_t RecordingSdk::bcmFieldActionPrioIntNew() {
   return call<&Shim::Sdk::bcmFieldActionPrioIntNew>();
}

bcm_field_action_t RecordingSdk::bcmFieldActionSwitchToCpuCancel() {
   return call<&Shim::Sdk::bcmFieldActionSwitchToCpuCancel>();
}

bcm_field_action_t RecordingSdk::BCM_HG_TRUNK_CANCEL_ACTION( int unit ) {
   return call<&Shim::Sdk::BCM_HG_TRUNK_CANCEL_ACTION>( unit );
}

bcm_field_IpFrag_t RecordingSdk::bcmFieldIpFragNon() {
   return call<&Shim::Sdk::bcmFieldIpFragNon>();
}

bcm_field_IpFrag_t RecordingSdk::bcmFieldIpFragFirst() {
   return call<&Shim::Sdk::bcmFieldIpFragFirst>();
}

bcm_field_IpFrag_t RecordingSdk::bcmFieldIpFragNonOrFirst() {
   return call<&Shim::Sdk::bcmFieldIpFragNonOrFirst>();
}

bcm_field_IpFrag_t RecordingSdk::bcmFieldIpFragNotFirst() {
   return call<&Shim::Sdk::bcmFieldIpFragNotFirst>();
}

bcm_field_IpFrag_t RecordingSdk::bcmFieldIpFragAny() {
   return call<&Shim::Sdk::bcmFieldIpFragAny>();
}

bcm_field_IpType_t RecordingSdk::bcmFieldIpTypeIpv4Any() {
   return call<&Shim::Sdk::bcmFieldIpTypeIpv4Any>();
}

bcm_field_IpType_t RecordingSdk::bcmFieldIpTypeIpv6() {
   return call<&Shim::Sdk::bcmFieldIpTypeIpv6>();
}

bcm_stg_stp_t RecordingSdk::BCM_STG_STP_BLOCK() {
   return call<&Shim::Sdk::BCM_STG_STP_BLOCK>();
}

bcm_stg_stp_t RecordingSdk::BCM_STG_STP_LEARN() {
   return call<&Shim::Sdk::BCM_STG_STP_LEARN>();
}

bcm_stg_stp_t RecordingSdk::BCM_STG_STP_FORWARD() {
   return call<&Shim::Sdk::BCM_STG_STP_FORWARD>();
}

int RecordingSdk::bcm_range_get( int unit, bcm_range_config_s* conf ) {
   return call<&Shim::Sdk::bcm_range_get>( unit, conf );
}

void RecordingSdk::bcm_range_config_t_init( bcm_range_config_s* conf ) {
   call<&Shim::Sdk::bcm_range_config_t_init>( conf );
}

int RecordingSdk::bcm_field_range_get( int unit, bcm_field_range_t range, U32* flags, int* low,
                                       int* high ) {
   return call<&Shim::Sdk::bcm_field_range_get>( unit, range, flags, low, high );
}

bcm_range_type_t RecordingSdk::bcmRangeTypeL4SrcPort() {
   return call<&Shim::Sdk::bcmRangeTypeL4SrcPort>();
}

bcm_range_type_t RecordingSdk::bcmRangeTypeL4DstPort() {
   return call<&Shim::Sdk::bcmRangeTypeL4DstPort>();
}

bcm_range_type_t RecordingSdk::bcmRangeTypePacketLength() {
   return call<&Shim::Sdk::bcmRangeTypePacketLength>();
}

int RecordingSdk::bcm_port_class_get( int unit, bcm_port_t port, bcm_port_class_t pclass,
                                      U32* classId ) {
   return call<&Shim::Sdk::bcm_port_class_get>( unit, port, pclass, classId );
}

int RecordingSdk::bcm_port_class_set( int unit, bcm_port_t port, bcm_port_class_t pclass,
                                      U32 classId ) {
   return call<&Shim::Sdk::bcm_port_class_set>( unit, port, pclass, classId );
}

int RecordingSdk::bcm_port_control_set( int unit, bcm_port_t port, bcm_port_control_t type,
                                        int value ) {
   return call<&Shim::Sdk::bcm_port_control_set>( unit, port, type, value );
}

int RecordingSdk::bcm_port_modid_egress_get( int unit, bcm_port_t port, bcm_module_t modid,
                                             bcm_pbmp_t* pbmp ) {
   return call<&Shim::Sdk::bcm_port_modid_egress_get>( unit, port, modid, pbmp );
}

int RecordingSdk::bcm_port_modid_egress_set( int unit, bcm_port_t port, bcm_module_t modid,
                                             bcm_pbmp_t pbmp ) {
   return call<&Shim::Sdk::bcm_port_modid_egress_set>( unit, port, modid, pbmp );
}

bcm_port_class_t RecordingSdk::bcmPortClassFieldIngress() {
   return call<&Shim::Sdk::bcmPortClassFieldIngress>();
}

bcm_port_class_t RecordingSdk::bcmPortClassFieldEgress() {
   return call<&Shim::Sdk::bcmPortClassFieldEgress>();
}

bcm_port_control_t RecordingSdk::bcmPortControlFilterEgress() {
   return call<&Shim::Sdk::bcmPortControlFilterEgress>();
}

bcm_pbmp_t RecordingSdk::PBMP_ALL( int unit ) {
   return call<&Shim::Sdk::PBMP_ALL>( unit );
}

bcm_pbmp_t RecordingSdk::PBMP_E_ALL( int unit ) {
   return call<&Shim::Sdk::PBMP_E_ALL>( unit );
}

bcm_pbmp_t RecordingSdk::PBMP_PORT_ALL( int unit ) {
   return call<&Shim::Sdk::PBMP_PORT_ALL>( unit );
}

void RecordingSdk::BCM_PBMP_CLEAR( bcm_pbmp_t& pbmp ) {
   call<&Shim::Sdk::BCM_PBMP_CLEAR>( pbmp );
}

bool RecordingSdk::BCM_PBMP_IS_NULL( const bcm_pbmp_t& pbmp ) {
   return call<&Shim::Sdk::BCM_PBMP_IS_NULL>( pbmp );
}

void RecordingSdk::BCM_PBMP_PORT_ADD( bcm_pbmp_t& pbmp, bcm_port_t port ) {
   call<&Shim::Sdk::BCM_PBMP_PORT_ADD>( pbmp, port );
}

void RecordingSdk::BCM_PBMP_PORT_REMOVE( bcm_pbmp_t& pbmp, bcm_port_t port ) {
   call<&Shim::Sdk::BCM_PBMP_PORT_REMOVE>( pbmp, port );
}

bool RecordingSdk::BCM_PBMP_MEMBER( const bcm_pbmp_t& pbmp, bcm_port_t port ) {
   return call<&Shim::Sdk::BCM_PBMP_MEMBER>( pbmp, port );
}

void RecordingSdk::BCM_PBMP_COUNT( const bcm_pbmp_t& pbmp, int& count ) {
   call<&Shim::Sdk::BCM_PBMP_COUNT>( pbmp, count );
}

bool RecordingSdk::isChipGroupA( int unit ) {
   return call<&Shim::Sdk::isChipGroupA>( unit );
}

bool RecordingSdk::isChipGroupB( int unit ) {
   return call<&Shim::Sdk::isChipGroupB>( unit );
}

bool RecordingSdk::isChipGroupC( int unit ) {
   return call<&Shim::Sdk::isChipGroupC>( unit );
}

bool RecordingSdk::isChipGroupD( int unit ) {
   return call<&Shim::Sdk::isChipGroupD>( unit );
}

bool RecordingSdk::isChipGroupE( int unit ) {
   return call<&Shim::Sdk::isChipGroupE>( unit );
}

bool RecordingSdk::isChipGroupF( int unit ) {
   return call<&Shim::Sdk::isChipGroupF>( unit );
}

int RecordingSdk::soc_mem_read( int unit, soc_mem_t mem, int block, int index,
                                port_tab_entry_s* row ) {
   return call<static_cast<int ( Shim::Sdk::* )( int, soc_mem_t, int, int, port_tab_entry_s* )>(
       &Shim::Sdk::soc_mem_read )>( unit, mem, block, index, row );
}

int RecordingSdk::soc_mem_read( int unit, soc_mem_t mem, int block, int index,
                                lport_tab_entry_s* row ) {
   return call<static_cast<int ( Shim::Sdk::* )( int, soc_mem_t, int, int, lport_tab_entry_s* )>(
       &Shim::Sdk::soc_mem_read )>( unit, mem, block, index, row );
}

void RecordingSdk::soc_mem_field32_set( int unit, soc_mem_t mem, port_tab_entry_s* row,
                                        soc_field_t field, U32 value ) {
   call<static_cast<void ( Shim::Sdk::* )( int, soc_mem_t, port_tab_entry_s*, soc_field_t, U32 )>(
       &Shim::Sdk::soc_mem_field32_set )>( unit, mem, row, field, value );
}

void RecordingSdk::soc_mem_field32_set( int unit, soc_mem_t mem, lport_tab_entry_s* row,
                                        soc_field_t field, U32 value ) {
   call<static_cast<void ( Shim::Sdk::* )( int, soc_mem_t, lport_tab_entry_s*, soc_field_t, U32 )>(
       &Shim::Sdk::soc_mem_field32_set )>( unit, mem, row, field, value );
}

int RecordingSdk::soc_mem_write( int unit, soc_mem_t mem, int block, int index,
                                 port_tab_entry_s* row ) {
   return call<static_cast<int ( Shim::Sdk::* )( int, soc_mem_t, int, int, port_tab_entry_s* )>(
       &Shim::Sdk::soc_mem_write )>( unit, mem, block, index, row );
}

int RecordingSdk::soc_mem_write( int unit, soc_mem_t mem, int block, int index,
                                 lport_tab_entry_s* row ) {
   return call<static_cast<int ( Shim::Sdk::* )( int, soc_mem_t, int, int, lport_tab_entry_s* )>(
       &Shim::Sdk::soc_mem_write )>( unit, mem, block, index, row );
}

int RecordingSdk::soc_mem_lock( int unit, soc_mem_t mem ) {
   return call<&Shim::Sdk::soc_mem_lock>( unit, mem );
}

int RecordingSdk::soc_mem_unlock( int unit, soc_mem_t mem ) {
   return call<&Shim::Sdk::soc_mem_unlock>( unit, mem );
}

soc_mem_t RecordingSdk::PORT_TABm() {
   return call<&Shim::Sdk::PORT_TABm>();
}

soc_mem_t RecordingSdk::LPORT_TABm() {
   return call<&Shim::Sdk::LPORT_TABm>();
}

int RecordingSdk::MEM_BLOCK_ANY() {
   return call<&Shim::Sdk::MEM_BLOCK_ANY>();
}

int RecordingSdk::MEM_BLOCK_ALL() {
   return call<&Shim::Sdk::MEM_BLOCK_ALL>();
}

soc_field_t RecordingSdk::USE_PORT_TABLE_GROUP_IDf() {
   return call<&Shim::Sdk::USE_PORT_TABLE_GROUP_IDf>();
}

void RecordingSdk::PORT_LOCK( int unit ) {
   call<&Shim::Sdk::PORT_LOCK>( unit );
}

void RecordingSdk::PORT_UNLOCK( int unit ) {
   call<&Shim::Sdk::PORT_UNLOCK>( unit );
}

int RecordingSdk::bcm_field_entry_dump( int unit, bcm_field_entry_t entry ) {
   return call<&Shim::Sdk::bcm_field_entry_dump>( unit, entry );
}

const char* RecordingSdk::bcm_errmsg( int rc ) {
   return call<&Shim::Sdk::bcm_errmsg>( rc );
}

int RecordingSdk::BCM_E_NONE() {
   return call<&Shim::Sdk::BCM_E_NONE>();
}

int RecordingSdk::BCM_E_NOT_FOUND() {
   return call<&Shim::Sdk::BCM_E_NOT_FOUND>();
}

int RecordingSdk::BCM_E_RESOURCE() {
   return call<&Shim::Sdk::BCM_E_RESOURCE>();
}

int RecordingSdk::enableEntryToleratedCode() {
   return call<&Shim::Sdk::enableEntryToleratedCode>();
}

}  // namespace Sim
