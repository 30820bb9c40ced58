// Shim::Sdk: the switch SDK as the library sees it.
//
// Every write to and every read from the switching chip goes through the one
// process-wide object Shim::sdk_. The class holds one pure virtual member for
// each SDK operation, constant and callable macro that the library uses, and
// nothing else:
//  - operations keep the SDK's names and arguments and return its `int`
//    return code (negative is an error);
//  - constants (enumerators, role codes, table ids) are accessors without
//    arguments, called at the moment the value is needed, so no SDK number
//    is ever compiled into the library;
//  - macros made callable (port bitmaps of a unit, bitmap helpers, chip
//    probes, the HiGig trunk cancel action, the port lock) are members too.
//
// Library code calls these through the names of SdkNames.h, inside one of
// the forms of SdkCall.h, which give up the activity lock for the call.
//
// Contract for implementations: per entry, keep each qualifier's data and
// mask, each action's parameters and the range checkers attached, and answer
// the _get members from them. A _get of a qualifier or action that the entry
// does not carry returns BCM_E_NOT_FOUND(), or BCM_E_NONE() with a zero mask.
// bcm_field_qualify_InPorts on a live entry replaces the earlier data and
// mask. Implementations must not include SdkNames.h.
//
// Threads: called on the activity thread, with the activity lock released.
#pragma once

#include <utility>

#include "platform/shim/BcmTypes.h"

namespace Shim {

class Sdk {
 public:
   Sdk() = default;
   Sdk( const Sdk& ) = delete;
   Sdk& operator=( const Sdk& ) = delete;
   virtual ~Sdk() = default;

   // ---- Qualifiers with data and mask. Setters add one qualifier to the entry.
   virtual int bcm_field_qualify_SrcIp( int unit, bcm_field_entry_t entry, bcm_ip_t data,
                                        bcm_ip_t mask ) = 0;
   virtual int bcm_field_qualify_DstIp( int unit, bcm_field_entry_t entry, bcm_ip_t data,
                                        bcm_ip_t mask ) = 0;
   virtual int bcm_field_qualify_SrcIp6( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                         const bcm_ip6_t& mask ) = 0;
   virtual int bcm_field_qualify_DstIp6( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                         const bcm_ip6_t& mask ) = 0;
   // Only the upper 64 bits of the address take part.
   virtual int bcm_field_qualify_SrcIp6High( int unit, bcm_field_entry_t entry,
                                             const bcm_ip6_t& data, const bcm_ip6_t& mask ) = 0;
   virtual int bcm_field_qualify_DstIp6High( int unit, bcm_field_entry_t entry,
                                             const bcm_ip6_t& data, const bcm_ip6_t& mask ) = 0;
   virtual int bcm_field_qualify_SrcMac( int unit, bcm_field_entry_t entry, const bcm_mac_t& data,
                                         const bcm_mac_t& mask ) = 0;
   virtual int bcm_field_qualify_DstMac( int unit, bcm_field_entry_t entry, const bcm_mac_t& data,
                                         const bcm_mac_t& mask ) = 0;
   virtual int bcm_field_qualify_EtherType( int unit, bcm_field_entry_t entry, U16 data,
                                            U16 mask ) = 0;
   virtual int bcm_field_qualify_IpProtocol( int unit, bcm_field_entry_t entry, U8 data,
                                             U8 mask ) = 0;
   virtual int bcm_field_qualify_ExtensionHeaderType( int unit, bcm_field_entry_t entry, U8 data,
                                                      U8 mask ) = 0;
   // L4SrcPort also carries ICMP type (high byte) and code (low byte).
   virtual int bcm_field_qualify_L4SrcPort( int unit, bcm_field_entry_t entry, U16 data,
                                            U16 mask ) = 0;
   virtual int bcm_field_qualify_L4DstPort( int unit, bcm_field_entry_t entry, U16 data,
                                            U16 mask ) = 0;
   // The whole TOS byte, DSCP and ECN.
   virtual int bcm_field_qualify_DSCP( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) = 0;
   virtual int bcm_field_qualify_Ip6TrafficClass( int unit, bcm_field_entry_t entry, U8 data,
                                                  U8 mask ) = 0;
   virtual int bcm_field_qualify_Ttl( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) = 0;
   virtual int bcm_field_qualify_Ip6HopLimit( int unit, bcm_field_entry_t entry, U8 data,
                                              U8 mask ) = 0;
   virtual int bcm_field_qualify_TcpControl( int unit, bcm_field_entry_t entry, U8 data,
                                             U8 mask ) = 0;
   virtual int bcm_field_qualify_OuterVlanId( int unit, bcm_field_entry_t entry, U16 data,
                                              U16 mask ) = 0;
   virtual int bcm_field_qualify_ForwardingVlanId( int unit, bcm_field_entry_t entry, U16 data,
                                                   U16 mask ) = 0;
   virtual int bcm_field_qualify_EgressClassL3Interface( int unit, bcm_field_entry_t entry,
                                                         U32 data, U32 mask ) = 0;
   virtual int bcm_field_qualify_VxlanNetworkId( int unit, bcm_field_entry_t entry, U32 data,
                                                 U32 mask ) = 0;
   // One-bit conditions, mask 1.
   virtual int bcm_field_qualify_HiGig( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) = 0;
   virtual int bcm_field_qualify_L3Routable( int unit, bcm_field_entry_t entry, U8 data,
                                             U8 mask ) = 0;
   virtual int bcm_field_qualify_MyStationHit( int unit, bcm_field_entry_t entry, U8 data,
                                               U8 mask ) = 0;
   virtual int bcm_field_qualify_IngressStpState( int unit, bcm_field_entry_t entry,
                                                  bcm_stg_stp_t state, U8 mask ) = 0;
   // A zero data bit under a one mask bit refuses that port.
   virtual int bcm_field_qualify_InPorts( int unit, bcm_field_entry_t entry, bcm_pbmp_t data,
                                          bcm_pbmp_t mask ) = 0;
   virtual int bcm_field_qualify_OutPort( int unit, bcm_field_entry_t entry, bcm_port_t data,
                                          bcm_port_t mask ) = 0;

   // ---- Class fields; the last six are compressed forms of plain fields.
   virtual int bcm_field_qualify_InterfaceClassPort( int unit, bcm_field_entry_t entry, U32 data,
                                                     U32 mask ) = 0;
   virtual int bcm_field_qualify_InterfaceClassL2( int unit, bcm_field_entry_t entry, U32 data,
                                                   U32 mask ) = 0;
   virtual int bcm_field_qualify_InterfaceClassL3( int unit, bcm_field_entry_t entry, U32 data,
                                                   U32 mask ) = 0;
   virtual int bcm_field_qualify_SrcClassField( int unit, bcm_field_entry_t entry, U32 data,
                                                U32 mask ) = 0;
   virtual int bcm_field_qualify_DstClassField( int unit, bcm_field_entry_t entry, U32 data,
                                                U32 mask ) = 0;
   virtual int bcm_field_qualify_DstClassL2( int unit, bcm_field_entry_t entry, U32 data,
                                             U32 mask ) = 0;
   virtual int bcm_field_qualify_EtherTypeClass( int unit, bcm_field_entry_t entry, U32 data,
                                                 U32 mask ) = 0;
   virtual int bcm_field_qualify_IpProtocolClass( int unit, bcm_field_entry_t entry, U32 data,
                                                  U32 mask ) = 0;
   virtual int bcm_field_qualify_L4SrcPortClass( int unit, bcm_field_entry_t entry, U32 data,
                                                 U32 mask ) = 0;
   virtual int bcm_field_qualify_L4DstPortClass( int unit, bcm_field_entry_t entry, U32 data,
                                                 U32 mask ) = 0;
   virtual int bcm_field_qualify_DstIpClassMsbNibble( int unit, bcm_field_entry_t entry, U32 data,
                                                      U32 mask ) = 0;
   virtual int bcm_field_qualify_DstIp6ClassMsbNibble( int unit, bcm_field_entry_t entry, U32 data,
                                                       U32 mask ) = 0;

   // ---- Qualifiers with one value.
   virtual int bcm_field_qualify_IpFrag( int unit, bcm_field_entry_t entry,
                                         bcm_field_IpFrag_t frag ) = 0;
   virtual int bcm_field_qualify_IpType( int unit, bcm_field_entry_t entry,
                                         bcm_field_IpType_t type ) = 0;

   // ---- Qualifier read-back: what the entry holds.
   virtual int bcm_field_qualify_SrcIp_get( int unit, bcm_field_entry_t entry, bcm_ip_t* data,
                                            bcm_ip_t* mask ) = 0;
   virtual int bcm_field_qualify_DstIp_get( int unit, bcm_field_entry_t entry, bcm_ip_t* data,
                                            bcm_ip_t* mask ) = 0;
   virtual int bcm_field_qualify_SrcIp6_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                             bcm_ip6_t* mask ) = 0;
   virtual int bcm_field_qualify_DstIp6_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                             bcm_ip6_t* mask ) = 0;
   virtual int bcm_field_qualify_SrcIp6High_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                                 bcm_ip6_t* mask ) = 0;
   virtual int bcm_field_qualify_DstIp6High_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                                 bcm_ip6_t* mask ) = 0;
   virtual int bcm_field_qualify_SrcMac_get( int unit, bcm_field_entry_t entry, bcm_mac_t* data,
                                             bcm_mac_t* mask ) = 0;
   virtual int bcm_field_qualify_DstMac_get( int unit, bcm_field_entry_t entry, bcm_mac_t* data,
                                             bcm_mac_t* mask ) = 0;
   virtual int bcm_field_qualify_EtherType_get( int unit, bcm_field_entry_t entry, U16* data,
                                                U16* mask ) = 0;
   virtual int bcm_field_qualify_IpProtocol_get( int unit, bcm_field_entry_t entry, U8* data,
                                                 U8* mask ) = 0;
   virtual int bcm_field_qualify_IpProtocolClass_get( int unit, bcm_field_entry_t entry, U32* data,
                                                      U32* mask ) = 0;
   virtual int bcm_field_qualify_ExtensionHeaderType_get( int unit, bcm_field_entry_t entry,
                                                          U8* data, U8* mask ) = 0;
   virtual int bcm_field_qualify_L4SrcPort_get( int unit, bcm_field_entry_t entry, U16* data,
                                                U16* mask ) = 0;
   virtual int bcm_field_qualify_L4DstPort_get( int unit, bcm_field_entry_t entry, U16* data,
                                                U16* mask ) = 0;
   virtual int bcm_field_qualify_L4SrcPortClass_get( int unit, bcm_field_entry_t entry, U32* data,
                                                     U32* mask ) = 0;
   virtual int bcm_field_qualify_L4DstPortClass_get( int unit, bcm_field_entry_t entry, U32* data,
                                                     U32* mask ) = 0;
   virtual int bcm_field_qualify_DSCP_get( int unit, bcm_field_entry_t entry, U8* data,
                                           U8* mask ) = 0;
   virtual int bcm_field_qualify_Ip6TrafficClass_get( int unit, bcm_field_entry_t entry, U8* data,
                                                      U8* mask ) = 0;
   virtual int bcm_field_qualify_Ip6HopLimit_get( int unit, bcm_field_entry_t entry, U8* data,
                                                  U8* mask ) = 0;
   virtual int bcm_field_qualify_TcpControl_get( int unit, bcm_field_entry_t entry, U8* data,
                                                 U8* mask ) = 0;
   virtual int bcm_field_qualify_IpFrag_get( int unit, bcm_field_entry_t entry,
                                             bcm_field_IpFrag_t* frag ) = 0;
   virtual int bcm_field_qualify_OuterVlanId_get( int unit, bcm_field_entry_t entry, U16* data,
                                                  U16* mask ) = 0;
   virtual int bcm_field_qualify_ForwardingVlanId_get( int unit, bcm_field_entry_t entry, U16* data,
                                                       U16* mask ) = 0;
   virtual int bcm_field_qualify_EgressClassL3Interface_get( int unit, bcm_field_entry_t entry,
                                                             U32* data, U32* mask ) = 0;
   virtual int bcm_field_qualify_HiGig_get( int unit, bcm_field_entry_t entry, U8* data,
                                            U8* mask ) = 0;
   virtual int bcm_field_qualify_L3Routable_get( int unit, bcm_field_entry_t entry, U8* data,
                                                 U8* mask ) = 0;
   virtual int bcm_field_qualify_MyStationHit_get( int unit, bcm_field_entry_t entry, U8* data,
                                                   U8* mask ) = 0;
   virtual int bcm_field_qualify_InterfaceClassPort_get( int unit, bcm_field_entry_t entry,
                                                         U32* data, U32* mask ) = 0;
   virtual int bcm_field_qualify_InterfaceClassL3_get( int unit, bcm_field_entry_t entry, U32* data,
                                                       U32* mask ) = 0;
   virtual int bcm_field_qualify_DstClassField_get( int unit, bcm_field_entry_t entry, U32* data,
                                                    U32* mask ) = 0;
   virtual int bcm_field_qualify_DstIpClassMsbNibble_get( int unit, bcm_field_entry_t entry,
                                                          U32* data, U32* mask ) = 0;
   virtual int bcm_field_qualify_DstIp6ClassMsbNibble_get( int unit, bcm_field_entry_t entry,
                                                           U32* data, U32* mask ) = 0;

   // ---- User-defined fields (2-byte payload windows named by a qualifier id).
   // The data-qualifier form, length last, and the UDF form, length first;
   // which one a chip takes is the library's choice. The reads fill at most
   // `maxLength` bytes and give the length back.
   virtual int bcm_field_qualify_data( int unit, bcm_field_entry_t entry, int qualId,
                                       const U8* data, const U8* mask, U16 length ) = 0;
   virtual int bcm_field_qualify_data_get( int unit, bcm_field_entry_t entry, int qualId,
                                           U16 maxLength, U8* data, U8* mask,
                                           U16* actualLength ) = 0;
   virtual int bcm_field_qualify_udf( int unit, bcm_field_entry_t entry, int udfId, U16 length,
                                      const U8* data, const U8* mask ) = 0;
   virtual int bcm_field_qualify_udf_get( int unit, bcm_field_entry_t entry, int udfId,
                                          U16 maxLength, U8* data, U8* mask,
                                          U16* actualLength ) = 0;

   // ---- Actions. _get returns BCM_E_NOT_FOUND() when the entry lacks the action.
   virtual int bcm_field_action_add( int unit, bcm_field_entry_t entry, bcm_field_action_t action,
                                     U32 param1, U32 param2 ) = 0;
   virtual int bcm_field_action_get( int unit, bcm_field_entry_t entry, bcm_field_action_t action,
                                     U32* param1, U32* param2 ) = 0;
   virtual int bcm_field_action_remove( int unit, bcm_field_entry_t entry,
                                        bcm_field_action_t action ) = 0;
   virtual int bcm_field_action_ports_add( int unit, bcm_field_entry_t entry,
                                           bcm_field_action_t action, bcm_pbmp_t pbmp ) = 0;
   virtual int bcm_field_action_ports_get( int unit, bcm_field_entry_t entry,
                                           bcm_field_action_t action, bcm_pbmp_t* pbmp ) = 0;

   virtual bcm_field_action_t bcmFieldActionClassSourceSet() = 0;
   virtual bcm_field_action_t bcmFieldActionCopyToCpu() = 0;
   virtual bcm_field_action_t bcmFieldActionCosQCpuNew() = 0;
   virtual bcm_field_action_t bcmFieldActionDrop() = 0;
   virtual bcm_field_action_t bcmFieldActionEgressMask() = 0;
   virtual bcm_field_action_t bcmFieldActionMirrorIngressIndex() = 0;
   virtual bcm_field_action_t bcmFieldActionPrioIntNew() = 0;
   virtual bcm_field_action_t bcmFieldActionSwitchToCpuCancel() = 0;
   // The action that cancels HiGig trunk resolution: one of two, by a chip
   // probe of the unit; the only action that depends on the unit.
   virtual bcm_field_action_t BCM_HG_TRUNK_CANCEL_ACTION( int unit ) = 0;

   virtual bcm_field_IpFrag_t bcmFieldIpFragNon() = 0;
   virtual bcm_field_IpFrag_t bcmFieldIpFragFirst() = 0;
   virtual bcm_field_IpFrag_t bcmFieldIpFragNonOrFirst() = 0;
   virtual bcm_field_IpFrag_t bcmFieldIpFragNotFirst() = 0;
   virtual bcm_field_IpFrag_t bcmFieldIpFragAny() = 0;
   virtual bcm_field_IpType_t bcmFieldIpTypeIpv4Any() = 0;
   virtual bcm_field_IpType_t bcmFieldIpTypeIpv6() = 0;
   virtual bcm_stg_stp_t BCM_STG_STP_BLOCK() = 0;
   virtual bcm_stg_stp_t BCM_STG_STP_LEARN() = 0;
   virtual bcm_stg_stp_t BCM_STG_STP_FORWARD() = 0;

   // ---- Range checkers.
   // Fills `conf` for the checker named by conf->rid().
   virtual int bcm_range_get( int unit, bcm_range_config_s* conf ) = 0;
   virtual void bcm_range_config_t_init( bcm_range_config_s* conf ) = 0;
   // The older form of the same question.
   virtual int bcm_field_range_get( int unit, bcm_field_range_t range, U32* flags, int* low,
                                    int* high ) = 0;
   // Lists at most `maxRanges` checker ids of the entry with their invert flags.
   virtual int bcm_field_qualify_RangeCheck_get( int unit, bcm_field_entry_t entry, int maxRanges,
                                                 bcm_field_range_t* ranges, int* inverts,
                                                 int* numRanges ) = 0;
   virtual bcm_range_type_t bcmRangeTypeL4SrcPort() = 0;
   virtual bcm_range_type_t bcmRangeTypeL4DstPort() = 0;
   virtual bcm_range_type_t bcmRangeTypePacketLength() = 0;

   // ---- Ports.
   virtual int bcm_port_class_get( int unit, bcm_port_t port, bcm_port_class_t pclass,
                                   U32* classId ) = 0;
   virtual int bcm_port_class_set( int unit, bcm_port_t port, bcm_port_class_t pclass,
                                   U32 classId ) = 0;
   virtual int bcm_port_control_set( int unit, bcm_port_t port, bcm_port_control_t type,
                                     int value ) = 0;
   virtual int bcm_port_modid_egress_get( int unit, bcm_port_t port, bcm_module_t modid,
                                          bcm_pbmp_t* pbmp ) = 0;
   // `modid` -1 sets the mask for every module.
   virtual int bcm_port_modid_egress_set( int unit, bcm_port_t port, bcm_module_t modid,
                                          bcm_pbmp_t pbmp ) = 0;
   virtual bcm_port_class_t bcmPortClassFieldIngress() = 0;
   virtual bcm_port_class_t bcmPortClassFieldEgress() = 0;
   virtual bcm_port_control_t bcmPortControlFilterEgress() = 0;

   // ---- Port bitmaps of a unit and the bitmap helpers.
   virtual bcm_pbmp_t PBMP_ALL( int unit ) = 0;       // every port
   virtual bcm_pbmp_t PBMP_E_ALL( int unit ) = 0;     // every Ethernet port
   virtual bcm_pbmp_t PBMP_PORT_ALL( int unit ) = 0;  // every front-panel port
   virtual void BCM_PBMP_CLEAR( bcm_pbmp_t& pbmp ) = 0;
   virtual bool BCM_PBMP_IS_NULL( const bcm_pbmp_t& pbmp ) = 0;
   virtual void BCM_PBMP_PORT_ADD( bcm_pbmp_t& pbmp, bcm_port_t port ) = 0;
   virtual void BCM_PBMP_PORT_REMOVE( bcm_pbmp_t& pbmp, bcm_port_t port ) = 0;
   // Whether `port` is in the bitmap.
   virtual bool BCM_PBMP_MEMBER( const bcm_pbmp_t& pbmp, bcm_port_t port ) = 0;
   virtual void BCM_PBMP_COUNT( const bcm_pbmp_t& pbmp, int& count ) = 0;

   // ---- Chip probes: yes-or-no facts of the unit's chip.
   virtual bool isChipGroupA( int unit ) = 0;
   virtual bool isChipGroupB( int unit ) = 0;
   virtual bool isChipGroupC( int unit ) = 0;
   virtual bool isChipGroupD( int unit ) = 0;
   virtual bool isChipGroupE( int unit ) = 0;
   virtual bool isChipGroupF( int unit ) = 0;

   // ---- Port table and L-port table rows (by table, block and index).
   virtual int soc_mem_read( int unit, soc_mem_t mem, int block, int index,
                             port_tab_entry_s* row ) = 0;
   virtual int soc_mem_read( int unit, soc_mem_t mem, int block, int index,
                             lport_tab_entry_s* row ) = 0;
   virtual void soc_mem_field32_set( int unit, soc_mem_t mem, port_tab_entry_s* row,
                                     soc_field_t field, U32 value ) = 0;
   virtual void soc_mem_field32_set( int unit, soc_mem_t mem, lport_tab_entry_s* row,
                                     soc_field_t field, U32 value ) = 0;
   virtual int soc_mem_write( int unit, soc_mem_t mem, int block, int index,
                              port_tab_entry_s* row ) = 0;
   virtual int soc_mem_write( int unit, soc_mem_t mem, int block, int index,
                              lport_tab_entry_s* row ) = 0;
   // The L-port table is read and written under its own lock.
   virtual int soc_mem_lock( int unit, soc_mem_t mem ) = 0;
   virtual int soc_mem_unlock( int unit, soc_mem_t mem ) = 0;
   virtual soc_mem_t PORT_TABm() = 0;
   virtual soc_mem_t LPORT_TABm() = 0;
   virtual int MEM_BLOCK_ANY() = 0;
   virtual int MEM_BLOCK_ALL() = 0;
   // The field telling the hardware to take a port's class from the port
   // table's group id; the same field in both tables.
   virtual soc_field_t USE_PORT_TABLE_GROUP_IDf() = 0;
   // The unit's internal port lock (PORT_LOCK_INTERNAL_NO_CHK).
   virtual void PORT_LOCK( int unit ) = 0;
   virtual void PORT_UNLOCK( int unit ) = 0;

   // ---- Diagnostics and return codes.
   // Prints one entry to the SDK's console.
   virtual int bcm_field_entry_dump( int unit, bcm_field_entry_t entry ) = 0;
   // The text of a return code; never null.
   virtual const char* bcm_errmsg( int rc ) = 0;
   virtual int BCM_E_NONE() = 0;
   // From a _get of an absent qualifier or action.
   virtual int BCM_E_NOT_FOUND() = 0;
   // From attaching a range checker to an entry that can take no more.
   virtual int BCM_E_RESOURCE() = 0;
   // The return that the entry managers tolerate when enabling an entry.
   virtual int enableEntryToleratedCode() = 0;
};

// The process-wide SDK object; null until one is installed.
extern Sdk* sdk_;

// Installs an SDK object as Shim::sdk_ for its scope and puts the previous
// one back when it ends (tests, the tool). Scopes must nest.
class SdkInstall {
 public:
   explicit SdkInstall( Sdk& sdk );
   ~SdkInstall();
   SdkInstall( const SdkInstall& ) = delete;
   SdkInstall& operator=( const SdkInstall& ) = delete;

 private:
   Sdk* previous_;
};

// Holds a unit's internal port lock for a scope, also when an exception passes.
class PortLockHold {
 public:
   explicit PortLockHold( int unit );
   ~PortLockHold();
   PortLockHold( const PortLockHold& ) = delete;
   PortLockHold& operator=( const PortLockHold& ) = delete;

 private:
   int unit_;
};

// What PORT_LOCK_INTERNAL_NO_CHK( unit, call ) does: take the port lock,
// run `call`, release the lock; its result is that of `call`. It does not
// give up the activity lock itself: it runs inside the bracket of the form
// that wraps it (SDK_NO_CHECK).
template <typename Call>
decltype( auto ) portLockInternalNoChk( int unit, Call&& call ) {
   PortLockHold hold( unit );
   return std::forward<Call>( call )();
}

}  // namespace Shim
