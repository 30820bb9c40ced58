// Sim::SimSdk: the switch SDK of the simulated switch, behind Shim::sdk_.
//
// It implements every member of Shim::Sdk on one Sim::ChipModel per unit. Whoever builds the
// switch makes the chip models, adds each with unitIs() and installs the SDK (Shim::SdkInstall);
// the library and the simulated managers then reach the chips through Shim::sdk_ only.
//
// Contract:
//   1. Every operation passes the call gate first (SdkCallGate.h): it is counted, the activity
//      lock is probed, and an injected fault answers in its place, with nothing done.
//   2. A unit without a chip answers kUnit ("Invalid unit"); an unknown entry kNotFound; an
//      SDK value this build does not know, a null output pointer or a wrong table kParam; a
//      port the unit lacks kPort. Nothing here crashes on a caller's bad value.
//   3. Qualifier setters store data and mask on the entry, translated to the chip model's
//      names; setting a qualifier again (InPorts included) replaces the earlier data and mask.
//   4. Qualifier reads answer what the entry holds. For a qualifier that the entry does not
//      carry, bcm_field_qualify_SrcIp_get and bcm_field_qualify_DstIp_get answer kNone with
//      zero data and zero mask (IPv4 addresses are always part of an IPv4 entry's key, and
//      the library writes a destination only where the read found none); every other read
//      answers kNotFound. bcm_field_action_get answers kNotFound for an absent action.
//   5. The UDF forms follow the chip: a unit whose kind has udfAltFormA or udfAltFormB takes
//      only the bcm_field_qualify_udf pair, any other only the bcm_field_qualify_data pair; the
//      wrong form answers kUnavail. Both name the chip model's UDF chunk by its id.
//   6. Port-table rows are read and written under a lock: PORT_TAB under the unit's port lock
//      (or soc_mem_lock of PORT_TAB), LPORT_TAB under soc_mem_lock of LPORT_TAB; an access
//      outside it, an unlock without a lock and an
//      unknown field are noted as contract violations on the gate (the call itself proceeds).
//   7. bcm_field_entry_dump writes the chip model's dump of the entry to the console stream
//      (std::cout unless consoleIs() names another).
//   8. BCM_HG_TRUNK_CANCEL_ACTION( unit ) is the HiGig trunk resolution cancel where
//      isChipGroupC( unit ) holds, the trunk load-balance cancel elsewhere.
//   9. PBMP_ALL( unit ) is every port of the unit, CPU port 0 included; PBMP_PORT_ALL the
//      front-panel ports 1 .. n-1; PBMP_E_ALL those less the HiGig ports (ChipCatalog.h). A
//      unit without a chip has empty bitmaps and answers no to every chip probe.
//
// Threads: one thread at a time (the activity thread, with the activity lock given up).
// Include before platform/shim/SdkNames.h, whose macros rewrite the names declared here.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <span>
#include <string_view>
#include <vector>

#include "platform/shim/Sdk.h"
#include "platform/vesper/Types.h"
#include "sim/catalog/ChipCatalog.h"
#include "sim/chip/ChipModel.h"
#include "sim/sdk/SdkCallGate.h"

namespace Sim {

// The SDK's port bitmap and the chip model's, ports for ports; ports beyond the model's
// bitmap (such as 1023) are no chip's and are left out.
PortBitmap portBitmapOf( const bcm_pbmp_t& pbmp );
bcm_pbmp_t pbmpOf( const PortBitmap& ports );

class SimSdk : public Shim::Sdk {
 public:
   SimSdk();
   ~SimSdk() override;

   // Adds or replaces the chip of `unit`, of the given kind.
   // REQUIRES: unit >= 0; `chip` and `kind` outlive their use here (or unitDel).
   void unitIs( int unit, ChipModel& chip, const ChipKind& kind );
   void unitDel( int unit );
   ChipModel* chip( int unit ) const;
   const ChipKind* chipKind( int unit ) const;
   // The depth of the unit's internal port lock (0: free).
   U32 portLockDepth( int unit ) const;

   SdkCallGate& gate() { return gate_; }
   const SdkCallGate& gate() const { return gate_; }
   // Shorthands of the gate, as tests use them.
   void failCall( std::string_view name, U32 n, int code ) { gate_.failCall( name, n, code ); }
   U64 callCount( std::string_view name ) const { return gate_.callCount( name ); }

   // Where entry dumps go. REQUIRES: `console` outlives its use here.
   void consoleIs( std::ostream& console ) { console_ = &console; }

   // ---- Qualifier setters (SimSdkQualifiers.cpp).
   int bcm_field_qualify_SrcIp( int unit, bcm_field_entry_t entry, bcm_ip_t data,
                                bcm_ip_t mask ) override;
   int bcm_field_qualify_DstIp( int unit, bcm_field_entry_t entry, bcm_ip_t data,
                                bcm_ip_t mask ) override;
   int bcm_field_qualify_SrcIp6( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                 const bcm_ip6_t& mask ) override;
   int bcm_field_qualify_DstIp6( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                 const bcm_ip6_t& mask ) override;
   int bcm_field_qualify_SrcIp6High( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                     const bcm_ip6_t& mask ) override;
   int bcm_field_qualify_DstIp6High( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                     const bcm_ip6_t& mask ) override;
   int bcm_field_qualify_SrcMac( int unit, bcm_field_entry_t entry, const bcm_mac_t& data,
                                 const bcm_mac_t& mask ) override;
   int bcm_field_qualify_DstMac( int unit, bcm_field_entry_t entry, const bcm_mac_t& data,
                                 const bcm_mac_t& mask ) override;
   int bcm_field_qualify_EtherType( int unit, bcm_field_entry_t entry, U16 data,
                                    U16 mask ) override;
   int bcm_field_qualify_IpProtocol( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) override;
   int bcm_field_qualify_ExtensionHeaderType( int unit, bcm_field_entry_t entry, U8 data,
                                              U8 mask ) override;
   int bcm_field_qualify_L4SrcPort( int unit, bcm_field_entry_t entry, U16 data,
                                    U16 mask ) override;
   int bcm_field_qualify_L4DstPort( int unit, bcm_field_entry_t entry, U16 data,
                                    U16 mask ) override;
   int bcm_field_qualify_DSCP( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) override;
   int bcm_field_qualify_Ip6TrafficClass( int unit, bcm_field_entry_t entry, U8 data,
                                          U8 mask ) override;
   int bcm_field_qualify_Ttl( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) override;
   int bcm_field_qualify_Ip6HopLimit( int unit, bcm_field_entry_t entry, U8 data,
                                      U8 mask ) override;
   int bcm_field_qualify_TcpControl( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) override;
   int bcm_field_qualify_OuterVlanId( int unit, bcm_field_entry_t entry, U16 data,
                                      U16 mask ) override;
   int bcm_field_qualify_ForwardingVlanId( int unit, bcm_field_entry_t entry, U16 data,
                                           U16 mask ) override;
   int bcm_field_qualify_EgressClassL3Interface( int unit, bcm_field_entry_t entry, U32 data,
                                                 U32 mask ) override;
   int bcm_field_qualify_VxlanNetworkId( int unit, bcm_field_entry_t entry, U32 data,
                                         U32 mask ) override;
   int bcm_field_qualify_HiGig( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) override;
   int bcm_field_qualify_L3Routable( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) override;
   int bcm_field_qualify_MyStationHit( int unit, bcm_field_entry_t entry, U8 data,
                                       U8 mask ) override;
   int bcm_field_qualify_IngressStpState( int unit, bcm_field_entry_t entry, bcm_stg_stp_t state,
                                          U8 mask ) override;
   int bcm_field_qualify_InPorts( int unit, bcm_field_entry_t entry, bcm_pbmp_t data,
                                  bcm_pbmp_t mask ) override;
   int bcm_field_qualify_OutPort( int unit, bcm_field_entry_t entry, bcm_port_t data,
                                  bcm_port_t mask ) override;
   int bcm_field_qualify_InterfaceClassPort( int unit, bcm_field_entry_t entry, U32 data,
                                             U32 mask ) override;
   int bcm_field_qualify_InterfaceClassL2( int unit, bcm_field_entry_t entry, U32 data,
                                           U32 mask ) override;
   int bcm_field_qualify_InterfaceClassL3( int unit, bcm_field_entry_t entry, U32 data,
                                           U32 mask ) override;
   int bcm_field_qualify_SrcClassField( int unit, bcm_field_entry_t entry, U32 data,
                                        U32 mask ) override;
   int bcm_field_qualify_DstClassField( int unit, bcm_field_entry_t entry, U32 data,
                                        U32 mask ) override;
   int bcm_field_qualify_DstClassL2( int unit, bcm_field_entry_t entry, U32 data,
                                     U32 mask ) override;
   int bcm_field_qualify_EtherTypeClass( int unit, bcm_field_entry_t entry, U32 data,
                                         U32 mask ) override;
   int bcm_field_qualify_IpProtocolClass( int unit, bcm_field_entry_t entry, U32 data,
                                          U32 mask ) override;
   int bcm_field_qualify_L4SrcPortClass( int unit, bcm_field_entry_t entry, U32 data,
                                         U32 mask ) override;
   int bcm_field_qualify_L4DstPortClass( int unit, bcm_field_entry_t entry, U32 data,
                                         U32 mask ) override;
   int bcm_field_qualify_DstIpClassMsbNibble( int unit, bcm_field_entry_t entry, U32 data,
                                              U32 mask ) override;
   int bcm_field_qualify_DstIp6ClassMsbNibble( int unit, bcm_field_entry_t entry, U32 data,
                                               U32 mask ) override;
   int bcm_field_qualify_IpFrag( int unit, bcm_field_entry_t entry,
                                 bcm_field_IpFrag_t frag ) override;
   int bcm_field_qualify_IpType( int unit, bcm_field_entry_t entry,
                                 bcm_field_IpType_t type ) override;
   // ---- Qualifier reads (SimSdkQualifierReads.cpp).
   int bcm_field_qualify_SrcIp_get( int unit, bcm_field_entry_t entry, bcm_ip_t* data,
                                    bcm_ip_t* mask ) override;
   int bcm_field_qualify_DstIp_get( int unit, bcm_field_entry_t entry, bcm_ip_t* data,
                                    bcm_ip_t* mask ) override;
   int bcm_field_qualify_SrcIp6_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                     bcm_ip6_t* mask ) override;
   int bcm_field_qualify_DstIp6_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                     bcm_ip6_t* mask ) override;
   int bcm_field_qualify_SrcIp6High_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                         bcm_ip6_t* mask ) override;
   int bcm_field_qualify_DstIp6High_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                         bcm_ip6_t* mask ) override;
   int bcm_field_qualify_SrcMac_get( int unit, bcm_field_entry_t entry, bcm_mac_t* data,
                                     bcm_mac_t* mask ) override;
   int bcm_field_qualify_DstMac_get( int unit, bcm_field_entry_t entry, bcm_mac_t* data,
                                     bcm_mac_t* mask ) override;
   int bcm_field_qualify_EtherType_get( int unit, bcm_field_entry_t entry, U16* data,
                                        U16* mask ) override;
   int bcm_field_qualify_IpProtocol_get( int unit, bcm_field_entry_t entry, U8* data,
                                         U8* mask ) override;
   int bcm_field_qualify_IpProtocolClass_get( int unit, bcm_field_entry_t entry, U32* data,
                                              U32* mask ) override;
   int bcm_field_qualify_ExtensionHeaderType_get( int unit, bcm_field_entry_t entry, U8* data,
                                                  U8* mask ) override;
   int bcm_field_qualify_L4SrcPort_get( int unit, bcm_field_entry_t entry, U16* data,
                                        U16* mask ) override;
   int bcm_field_qualify_L4DstPort_get( int unit, bcm_field_entry_t entry, U16* data,
                                        U16* mask ) override;
   int bcm_field_qualify_L4SrcPortClass_get( int unit, bcm_field_entry_t entry, U32* data,
                                             U32* mask ) override;
   int bcm_field_qualify_L4DstPortClass_get( int unit, bcm_field_entry_t entry, U32* data,
                                             U32* mask ) override;
   int bcm_field_qualify_DSCP_get( int unit, bcm_field_entry_t entry, U8* data, U8* mask ) override;
   int bcm_field_qualify_Ip6TrafficClass_get( int unit, bcm_field_entry_t entry, U8* data,
                                              U8* mask ) override;
   int bcm_field_qualify_Ip6HopLimit_get( int unit, bcm_field_entry_t entry, U8* data,
                                          U8* mask ) override;
   int bcm_field_qualify_TcpControl_get( int unit, bcm_field_entry_t entry, U8* data,
                                         U8* mask ) override;
   int bcm_field_qualify_IpFrag_get( int unit, bcm_field_entry_t entry,
                                     bcm_field_IpFrag_t* frag ) override;
   int bcm_field_qualify_OuterVlanId_get( int unit, bcm_field_entry_t entry, U16* data,
                                          U16* mask ) override;
   int bcm_field_qualify_ForwardingVlanId_get( int unit, bcm_field_entry_t entry, U16* data,
                                               U16* mask ) override;
   int bcm_field_qualify_EgressClassL3Interface_get( int unit, bcm_field_entry_t entry, U32* data,
                                                     U32* mask ) override;
   int bcm_field_qualify_HiGig_get( int unit, bcm_field_entry_t entry, U8* data,
                                    U8* mask ) override;
   int bcm_field_qualify_L3Routable_get( int unit, bcm_field_entry_t entry, U8* data,
                                         U8* mask ) override;
   int bcm_field_qualify_MyStationHit_get( int unit, bcm_field_entry_t entry, U8* data,
                                           U8* mask ) override;
   int bcm_field_qualify_InterfaceClassPort_get( int unit, bcm_field_entry_t entry, U32* data,
                                                 U32* mask ) override;
   int bcm_field_qualify_InterfaceClassL3_get( int unit, bcm_field_entry_t entry, U32* data,
                                               U32* mask ) override;
   int bcm_field_qualify_DstClassField_get( int unit, bcm_field_entry_t entry, U32* data,
                                            U32* mask ) override;
   int bcm_field_qualify_DstIpClassMsbNibble_get( int unit, bcm_field_entry_t entry, U32* data,
                                                  U32* mask ) override;
   int bcm_field_qualify_DstIp6ClassMsbNibble_get( int unit, bcm_field_entry_t entry, U32* data,
                                                   U32* mask ) override;
   // ---- User-defined fields (SimSdkActions.cpp).
   int bcm_field_qualify_data( int unit, bcm_field_entry_t entry, int qualId, const U8* data,
                               const U8* mask, U16 length ) override;
   int bcm_field_qualify_data_get( int unit, bcm_field_entry_t entry, int qualId, U16 maxLength,
                                   U8* data, U8* mask, U16* actualLength ) override;
   int bcm_field_qualify_udf( int unit, bcm_field_entry_t entry, int udfId, U16 length,
                              const U8* data, const U8* mask ) override;
   int bcm_field_qualify_udf_get( int unit, bcm_field_entry_t entry, int udfId, U16 maxLength,
                                  U8* data, U8* mask, U16* actualLength ) override;
   // ---- Actions (SimSdkActions.cpp).
   int bcm_field_action_add( int unit, bcm_field_entry_t entry, bcm_field_action_t action,
                             U32 param1, U32 param2 ) override;
   int bcm_field_action_get( int unit, bcm_field_entry_t entry, bcm_field_action_t action,
                             U32* param1, U32* param2 ) override;
   int bcm_field_action_remove( int unit, bcm_field_entry_t entry,
                                bcm_field_action_t action ) override;
   int bcm_field_action_ports_add( int unit, bcm_field_entry_t entry, bcm_field_action_t action,
                                   bcm_pbmp_t pbmp ) override;
   int bcm_field_action_ports_get( int unit, bcm_field_entry_t entry, bcm_field_action_t action,
                                   bcm_pbmp_t* pbmp ) override;
   // ---- Range checker reads (SimSdkRanges.cpp).
   int bcm_range_get( int unit, bcm_range_config_s* conf ) override;
   int bcm_field_range_get( int unit, bcm_field_range_t range, U32* flags, int* low,
                            int* high ) override;
   void bcm_range_config_t_init( bcm_range_config_s* conf ) override;
   int bcm_field_qualify_RangeCheck_get( int unit, bcm_field_entry_t entry, int maxRanges,
                                         bcm_field_range_t* ranges, int* inverts,
                                         int* numRanges ) override;
   // ---- Ports and port tables (SimSdkPorts.cpp).
   int bcm_port_class_get( int unit, bcm_port_t port, bcm_port_class_t pclass,
                           U32* classId ) override;
   int bcm_port_class_set( int unit, bcm_port_t port, bcm_port_class_t pclass,
                           U32 classId ) override;
   int bcm_port_control_set( int unit, bcm_port_t port, bcm_port_control_t type,
                             int value ) override;
   int bcm_port_modid_egress_get( int unit, bcm_port_t port, bcm_module_t modid,
                                  bcm_pbmp_t* pbmp ) override;
   int bcm_port_modid_egress_set( int unit, bcm_port_t port, bcm_module_t modid,
                                  bcm_pbmp_t pbmp ) override;
   int soc_mem_read( int unit, soc_mem_t mem, int block, int index,
                     port_tab_entry_s* row ) override;
   int soc_mem_read( int unit, soc_mem_t mem, int block, int index,
                     lport_tab_entry_s* row ) override;
   void soc_mem_field32_set( int unit, soc_mem_t mem, port_tab_entry_s* row, soc_field_t field,
                             U32 value ) override;
   void soc_mem_field32_set( int unit, soc_mem_t mem, lport_tab_entry_s* row, soc_field_t field,
                             U32 value ) override;
   int soc_mem_write( int unit, soc_mem_t mem, int block, int index,
                      port_tab_entry_s* row ) override;
   int soc_mem_write( int unit, soc_mem_t mem, int block, int index,
                      lport_tab_entry_s* row ) override;
   int soc_mem_lock( int unit, soc_mem_t mem ) override;
   int soc_mem_unlock( int unit, soc_mem_t mem ) override;
   void PORT_LOCK( int unit ) override;
   void PORT_UNLOCK( int unit ) override;
   // ---- Diagnostics (SimSdk.cpp).
   int bcm_field_entry_dump( int unit, bcm_field_entry_t entry ) override;
   const char* bcm_errmsg( int rc ) override;
   // ---- Bitmaps of a unit, chip probes (SimSdk.cpp).
   bcm_pbmp_t PBMP_ALL( int unit ) override;
   bcm_pbmp_t PBMP_E_ALL( int unit ) override;
   bcm_pbmp_t PBMP_PORT_ALL( int unit ) override;
   void BCM_PBMP_CLEAR( bcm_pbmp_t& pbmp ) override;
   bool BCM_PBMP_IS_NULL( const bcm_pbmp_t& pbmp ) override;
   void BCM_PBMP_PORT_ADD( bcm_pbmp_t& pbmp, bcm_port_t port ) override;
   void BCM_PBMP_PORT_REMOVE( bcm_pbmp_t& pbmp, bcm_port_t port ) override;
   bool BCM_PBMP_MEMBER( const bcm_pbmp_t& pbmp, bcm_port_t port ) override;
   void BCM_PBMP_COUNT( const bcm_pbmp_t& pbmp, int& count ) override;
   bool isChipGroupA( int unit ) override;
   bool isChipGroupB( int unit ) override;
   bool isChipGroupC( int unit ) override;
   bool isChipGroupD( int unit ) override;
   bool isChipGroupE( int unit ) override;
   bool isChipGroupF( int unit ) override;
   bcm_field_action_t BCM_HG_TRUNK_CANCEL_ACTION( int unit ) override;
   // ---- Enumerators, role codes and table ids of this SDK build (SimSdkValues.cpp).
   bcm_field_action_t bcmFieldActionClassSourceSet() override;
   bcm_field_action_t bcmFieldActionCopyToCpu() override;
   bcm_field_action_t bcmFieldActionCosQCpuNew() override;
   bcm_field_action_t bcmFieldActionDrop() override;
   bcm_field_action_t bcmFieldActionEgressMask() override;
   bcm_field_action_t bcmFieldActionMirrorIngressIndex() override;
   bcm_field_action_t bcmFieldActionPrioIntNew() override;
   bcm_field_action_t bcmFieldActionSwitchToCpuCancel() override;
   bcm_field_IpFrag_t bcmFieldIpFragNon() override;
   bcm_field_IpFrag_t bcmFieldIpFragFirst() override;
   bcm_field_IpFrag_t bcmFieldIpFragNonOrFirst() override;
   bcm_field_IpFrag_t bcmFieldIpFragNotFirst() override;
   bcm_field_IpFrag_t bcmFieldIpFragAny() override;
   bcm_field_IpType_t bcmFieldIpTypeIpv4Any() override;
   bcm_field_IpType_t bcmFieldIpTypeIpv6() override;
   bcm_stg_stp_t BCM_STG_STP_BLOCK() override;
   bcm_stg_stp_t BCM_STG_STP_LEARN() override;
   bcm_stg_stp_t BCM_STG_STP_FORWARD() override;
   bcm_range_type_t bcmRangeTypeL4SrcPort() override;
   bcm_range_type_t bcmRangeTypeL4DstPort() override;
   bcm_range_type_t bcmRangeTypePacketLength() override;
   bcm_port_class_t bcmPortClassFieldIngress() override;
   bcm_port_class_t bcmPortClassFieldEgress() override;
   bcm_port_control_t bcmPortControlFilterEgress() override;
   soc_mem_t PORT_TABm() override;
   soc_mem_t LPORT_TABm() override;
   int MEM_BLOCK_ANY() override;
   int MEM_BLOCK_ALL() override;
   soc_field_t USE_PORT_TABLE_GROUP_IDf() override;
   int BCM_E_NONE() override;
   int BCM_E_NOT_FOUND() override;
   int BCM_E_RESOURCE() override;
   int enableEntryToleratedCode() override;

 private:
   struct Unit {
      ChipModel* chip = nullptr;
      const ChipKind* kind = nullptr;
      U32 portLockDepth = 0;
      U32 portTableLockDepth = 0;   // soc_mem_lock of PORT_TAB
      U32 lportTableLockDepth = 0;  // soc_mem_lock of LPORT_TAB
   };
   // What a read of a qualifier that the entry lacks answers (contract 4).
   enum class Absent : U8 { notFound, zeroMask };
   // Which ports of a unit a bitmap macro stands for.
   enum class PortSet : U8 { all, ethernet, frontPanel };

   const Unit* unitOf( int unit ) const;
   Unit* unitOf( int unit );
   // Passes the gate for `op` and finds the unit's chip: 0 with `chip` set, or the code to
   // answer in place of the operation.
   int begin( SdkOp op, int unit, ChipModel*& chip );
   int begin( SdkOp op, int unit, Unit*& u );

   int qualify( SdkOp op, int unit, bcm_field_entry_t entry, QualId q, U64 data, U64 mask );
   int qualifyBytes( SdkOp op, int unit, bcm_field_entry_t entry, QualId q,
                     std::span<const U8> data, std::span<const U8> mask );
   template <typename T>
   int readQual( SdkOp op, int unit, bcm_field_entry_t entry, QualId q, Absent absent, T* data,
                 T* mask );
   template <std::size_t N>
   int readQualBytes( SdkOp op, int unit, bcm_field_entry_t entry, QualId q, U8 ( *data )[N],
                      U8 ( *mask )[N] );

   int udfWrite( SdkOp op, bool altForm, int unit, bcm_field_entry_t entry, int id, const U8* data,
                 const U8* mask, U16 length );
   int udfRead( SdkOp op, bool altForm, int unit, bcm_field_entry_t entry, int id, U16 maxLength,
                U8* data, U8* mask, U16* actualLength );

   template <typename Row>
   int tableRead( int unit, soc_mem_t mem, int block, int index, Row* row );
   template <typename Row>
   int tableWrite( int unit, soc_mem_t mem, int block, int index, Row* row );
   template <typename Row>
   void tableFieldSet( int unit, soc_mem_t mem, Row* row, soc_field_t field, U32 value );
   // Notes a violation unless the lock that guards `mem` of `u` is held.
   void requireTableLock( const Unit& u, int unit, soc_mem_t mem, const char* what );

   bcm_pbmp_t unitPorts( int unit, PortSet which ) const;
   bool probe( int unit, bool ChipProbes::*which ) const;

   std::vector<Unit> units_;  // by unit number; an absent unit has no chip
   SdkCallGate gate_;
   std::ostream* console_;
};

}  // namespace Sim
