// Sim::SdkCallGate: the one check at the top of every operation of the simulated SDK.
//
// On each operation it
//   1. counts the use, by operation name (callCount);
//   2. probes the activity lock: an SDK operation runs with the lock given up (the sdkCall
//      bracket), so a call made while the calling thread holds it is a violation of the
//      library's contract. The probe records it (lockViolations) or, in abort mode, stops the
//      process with a line naming the operation;
//   3. fires an injected fault: failCall( "bcm_field_qualify_DstIp", n, code ) makes the n-th
//      use of that operation from now on answer `code` and do nothing else. Faults on several
//      operations, and several uses of one, may be pending at once; each fires once.
//
// What counts as an operation: every member of Shim::Sdk that acts on a unit (qualifiers and
// their reads, actions, range checker reads, port and port-table calls, the port and table
// locks, the entry dump). The enumerator and return-code accessors, the bitmap helpers, the
// chip probes and bcm_errmsg are values rather than calls and pass no gate: the library may
// fetch them with the lock held (to compare a result, or to write a failure line). Operations
// without a return code (soc_mem_field32_set, PORT_LOCK, PORT_UNLOCK) are counted and probed
// but cannot be failed.
//
// Besides, the gate keeps the list of contract violations found by the simulated SDK (a
// port-table write outside its lock, an unlock without a lock, ...), with the lock-probe ones.
//
// Cost: enter() is an array increment, one relaxed atomic load for the probe and one array
// test for faults; the fault list is searched only when a fault is pending on that operation.
// Threads: one thread at a time, like the SDK calls it guards.
// Include before platform/shim/SdkNames.h, whose macros rewrite the operation names.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/vesper/Types.h"
#include "sim/probe/HardwareCalls.h"

// Every operation of the simulated SDK that returns a code, then those that return nothing.
#define SIM_SDK_CODE_OPERATIONS( X )                 \
   X( bcm_field_qualify_SrcIp )                      \
   X( bcm_field_qualify_DstIp )                      \
   X( bcm_field_qualify_SrcIp6 )                     \
   X( bcm_field_qualify_DstIp6 )                     \
   X( bcm_field_qualify_SrcIp6High )                 \
   X( bcm_field_qualify_DstIp6High )                 \
   X( bcm_field_qualify_SrcMac )                     \
   X( bcm_field_qualify_DstMac )                     \
   X( bcm_field_qualify_EtherType )                  \
   X( bcm_field_qualify_IpProtocol )                 \
   X( bcm_field_qualify_ExtensionHeaderType )        \
   X( bcm_field_qualify_L4SrcPort )                  \
   X( bcm_field_qualify_L4DstPort )                  \
   X( bcm_field_qualify_DSCP )                       \
   X( bcm_field_qualify_Ip6TrafficClass )            \
   X( bcm_field_qualify_Ttl )                        \
   X( bcm_field_qualify_Ip6HopLimit )                \
   X( bcm_field_qualify_TcpControl )                 \
   X( bcm_field_qualify_OuterVlanId )                \
   X( bcm_field_qualify_ForwardingVlanId )           \
   X( bcm_field_qualify_EgressClassL3Interface )     \
   X( bcm_field_qualify_VxlanNetworkId )             \
   X( bcm_field_qualify_HiGig )                      \
   X( bcm_field_qualify_L3Routable )                 \
   X( bcm_field_qualify_MyStationHit )               \
   X( bcm_field_qualify_IngressStpState )            \
   X( bcm_field_qualify_InPorts )                    \
   X( bcm_field_qualify_OutPort )                    \
   X( bcm_field_qualify_InterfaceClassPort )         \
   X( bcm_field_qualify_InterfaceClassL2 )           \
   X( bcm_field_qualify_InterfaceClassL3 )           \
   X( bcm_field_qualify_SrcClassField )              \
   X( bcm_field_qualify_DstClassField )              \
   X( bcm_field_qualify_DstClassL2 )                 \
   X( bcm_field_qualify_EtherTypeClass )             \
   X( bcm_field_qualify_IpProtocolClass )            \
   X( bcm_field_qualify_L4SrcPortClass )             \
   X( bcm_field_qualify_L4DstPortClass )             \
   X( bcm_field_qualify_DstIpClassMsbNibble )        \
   X( bcm_field_qualify_DstIp6ClassMsbNibble )       \
   X( bcm_field_qualify_IpFrag )                     \
   X( bcm_field_qualify_IpType )                     \
   X( bcm_field_qualify_SrcIp_get )                  \
   X( bcm_field_qualify_DstIp_get )                  \
   X( bcm_field_qualify_SrcIp6_get )                 \
   X( bcm_field_qualify_DstIp6_get )                 \
   X( bcm_field_qualify_SrcIp6High_get )             \
   X( bcm_field_qualify_DstIp6High_get )             \
   X( bcm_field_qualify_SrcMac_get )                 \
   X( bcm_field_qualify_DstMac_get )                 \
   X( bcm_field_qualify_EtherType_get )              \
   X( bcm_field_qualify_IpProtocol_get )             \
   X( bcm_field_qualify_IpProtocolClass_get )        \
   X( bcm_field_qualify_ExtensionHeaderType_get )    \
   X( bcm_field_qualify_L4SrcPort_get )              \
   X( bcm_field_qualify_L4DstPort_get )              \
   X( bcm_field_qualify_L4SrcPortClass_get )         \
   X( bcm_field_qualify_L4DstPortClass_get )         \
   X( bcm_field_qualify_DSCP_get )                   \
   X( bcm_field_qualify_Ip6TrafficClass_get )        \
   X( bcm_field_qualify_Ip6HopLimit_get )            \
   X( bcm_field_qualify_TcpControl_get )             \
   X( bcm_field_qualify_IpFrag_get )                 \
   X( bcm_field_qualify_OuterVlanId_get )            \
   X( bcm_field_qualify_ForwardingVlanId_get )       \
   X( bcm_field_qualify_EgressClassL3Interface_get ) \
   X( bcm_field_qualify_HiGig_get )                  \
   X( bcm_field_qualify_L3Routable_get )             \
   X( bcm_field_qualify_MyStationHit_get )           \
   X( bcm_field_qualify_InterfaceClassPort_get )     \
   X( bcm_field_qualify_InterfaceClassL3_get )       \
   X( bcm_field_qualify_DstClassField_get )          \
   X( bcm_field_qualify_DstIpClassMsbNibble_get )    \
   X( bcm_field_qualify_DstIp6ClassMsbNibble_get )   \
   X( bcm_field_qualify_data )                       \
   X( bcm_field_qualify_data_get )                   \
   X( bcm_field_qualify_udf )                        \
   X( bcm_field_qualify_udf_get )                    \
   X( bcm_field_action_add )                         \
   X( bcm_field_action_get )                         \
   X( bcm_field_action_remove )                      \
   X( bcm_field_action_ports_add )                   \
   X( bcm_field_action_ports_get )                   \
   X( bcm_range_get )                                \
   X( bcm_field_range_get )                          \
   X( bcm_field_qualify_RangeCheck_get )             \
   X( bcm_port_class_get )                           \
   X( bcm_port_class_set )                           \
   X( bcm_port_control_set )                         \
   X( bcm_port_modid_egress_get )                    \
   X( bcm_port_modid_egress_set )                    \
   X( soc_mem_read )                                 \
   X( soc_mem_write )                                \
   X( soc_mem_lock )                                 \
   X( soc_mem_unlock )                               \
   X( bcm_field_entry_dump )

#define SIM_SDK_VOID_OPERATIONS( X ) \
   X( soc_mem_field32_set )          \
   X( PORT_LOCK )                    \
   X( PORT_UNLOCK )

namespace Sim {

enum class SdkOp : U16 {
#define SIM_SDK_OP_ENUMERATOR( name ) name,
   SIM_SDK_CODE_OPERATIONS( SIM_SDK_OP_ENUMERATOR ) SIM_SDK_VOID_OPERATIONS( SIM_SDK_OP_ENUMERATOR )
#undef SIM_SDK_OP_ENUMERATOR
};

inline constexpr std::size_t kSdkOpCount = static_cast<std::size_t>( SdkOp::PORT_UNLOCK ) + 1;

std::string_view sdkOpName( SdkOp op );
// Operations that answer a code, and so can be failed.
bool sdkOpHasCode( SdkOp op );

class SdkCallGate {
 public:
   enum class LockProbe : U8 {
      off,     // no check
      record,  // count the violation and note it (the default)
      abort,   // write the violation on stderr and stop the process
   };

   // The answer for an operation about to run: 0 to go on, or the code of a fault that fires on
   // this use. Inline, since every operation starts with it.
   int enter( SdkOp op ) {
      const auto i = static_cast<std::size_t>( op );
      if ( hardwareCallObserver() ) {
         hardwareCallSeen( sdkOpName( op ) );  // the update probe's look between calls
      }
      ++counts_[i];
      if ( probe_ != LockProbe::off ) {
         probeLock( op );
      }
      return pending_[i] ? fire( op ) : 0;
   }

   // Uses of an operation since the gate was made; a name that is no operation raises
   // Vesper::RangeException.
   U64 callCount( std::string_view name ) const;
   U64 callCount( SdkOp op ) const { return counts_[static_cast<std::size_t>( op )]; }

   // REQUIRES: `name` is an operation with a code, n >= 1, code < 0; otherwise
   // Vesper::RangeException. Setting the same operation and use again replaces the code.
   void failCall( std::string_view name, U32 n, int code );
   std::size_t faultsPending() const { return faults_.size(); }
   void faultsDelAll();

   LockProbe lockProbe() const { return probe_; }
   void lockProbeIs( LockProbe probe ) { probe_ = probe; }
   U64 lockViolations() const { return lockViolations_; }

   // Contract violations found so far, oldest first, lock-probe ones included.
   const std::vector<std::string>& violations() const { return violations_; }
   void violationIs( std::string text ) { violations_.push_back( std::move( text ) ); }
   void violationsDelAll();

 private:
   struct Fault {
      SdkOp op;
      U64 atCount;  // fires when the operation's count reaches this
      int code;
   };

   void probeLock( SdkOp op );
   int fire( SdkOp op );

   std::array<U64, kSdkOpCount> counts_{};
   std::array<U32, kSdkOpCount> pending_{};  // faults pending per operation
   std::vector<Fault> faults_;
   LockProbe probe_ = LockProbe::record;
   U64 lockViolations_ = 0;
   std::vector<std::string> violations_;
};

}  // namespace Sim
