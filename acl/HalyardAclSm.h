// Halyard::AclHelper: the hardware back-end of switch ACLs, the concrete form of the generic
// layer's FennelHelper::AclHelper. One per agent, made by aclHelperFactory. It holds the agent's
// records it was built with (never changed afterwards) and the TCAM entry managers (filled by
// hwInit), and owns by counted pointer every other object of the back-end:
//
//   VfpAclTypeForPort      (VfpAclTypeForPort.h) per unit: the ACL type that owns each port's VFP
//   HalyardIntfClassData   (HalyardIntfClassData.h) per unit: the free ingress interface classes
//   IngressRaclData        (IngressRaclData.h) the store of shared router ACL identifiers
//   SharedRaclMgmtSm       (SharedRaclMgmtSm.h) the sharing manager of router ACLs
//   VlanBlockedSm          (VlanBlockedSm.h) follows the VLAN blocks of the topology agents
//   HalyardAclData, AclUnitData (HalyardAclTypes.h) and the rule records (HalyardAclCommon.h)
//   HalyardAclTypeDirectionFeatureSm (HalyardAclTypeDirectionFeatureSm.h)
//                          per ACL type, direction and feature: its entry managers and the
//                          egress interface class pools.
// The entity that owns the generic state machine is AclSmEntity (AclSmEntity.h).
//
// Life of the helper:
//  1. Construction stores the parameters and ends in handleInitialized: blocks left from an
//     earlier life are dropped, each unit of the common data gets its VfpAclTypeForPort and its
//     per-chip member of the VLAN topology's class requests, then IngressRaclData,
//     SharedRaclMgmtSm and VlanBlockedSm are made, in this order.
//  2. The generic machine calls hwInit once: capability flags, entry managers, the
//     type-direction state machines, the hidden management entries, the free classes.
//  3. The generic machine drives the operations of the base interface.
//  4. The destructor removes, in this order: sharedRaclMgmtSm, every
//     halyardAclTypeDirectionFeatureSm, every halyardAclData, every vfpAclTypeForUnit, every
//     halyardIntfClassData, vlanBlockedSm, ingressRaclData. It programs no hardware: what
//     stands in the chips is for the next start.
//
// Invariants:
//  1. The constructor parameters never change.
//  2. A unit absent from unitDirty is not dirty. unitDirty empties when the dirty flag goes
//     from true to false (handleDirty); units are marked one by one (unitDirtyIs), also while
//     the flag stands false (a binding that wakes another ACL for VFP marks its unit only), so
//     members may stand while dirty() is false. A unit that holds a dirty ACL stays marked
//     until the generic layer clears the flag.
//  3. The keyed creators (vfpAclTypeForUnitIs, halyardIntfClassDataIs, ingressRaclDataIs,
//     halyardAclDataIs, halyardAclTypeDirectionFeatureSmIs) return the standing member.
//
// Not written yet, and failing loudly: the operations of blocking, verification, show, router
// ACL scope and shared router ACLs (binding a shared router ACL included) stop the process with
// "AclHelper::<operation> is not available yet" (HalyardAclSmPending.cpp). IngressRaclData,
// SharedRaclMgmtSm and VlanBlockedSm are only wired: they hold what they are built with and
// react to nothing yet.
//
// Sources, one concern each: HalyardAclSmLifecycle.cpp (construction, destruction, factory,
// the dirty flag), HalyardAclSmRecords.cpp (the owned collections and objects),
// HalyardAclSmBringup.cpp and HalyardAclSmMgmtEntries.cpp (hwInit and the hidden entries),
// HalyardAclSmPrecreate.cpp (the plan of a pass: VFP, classes, port claims),
// HalyardAclSmEntries.cpp (the entries of any rule), HalyardAclSmMacRules.cpp,
// HalyardAclSmIpRules.cpp, HalyardAclSmClosingRules.cpp and HalyardAclSmUdf.cpp (rules by kind),
// HalyardAclSmCommit.cpp (compression, commit, enable), HalyardAclSmPorts.cpp (port classes,
// port tables), HalyardAclSmBinding.cpp (interfaces joining and leaving ACLs, and whether that
// needs a reapply), HalyardAclSmPortUpdate.cpp (port masks onto committed entries),
// HalyardAclSmTeardown.cpp (destroyAcl, cleanupAcl), HalyardAclSmCounters.cpp (rule hit
// counters), HalyardAclSmSharing.cpp (whether router ACLs are shared),
// HalyardAclTypeDirectionFeatureSm.cpp (the state machines, mirroring and uRPF),
// HalyardAclSmExhaustion.cpp (the deferred update when TCAM frees up), HalyardAclSmPending.cpp
// (operations not written yet).
//
// Threads: the agent's activity thread, with the activity lock held; SDK calls give it up for
// their length, so reactors may run between two SDK calls of one operation.
#pragma once

#include <optional>
#include <utility>

#include "acl/AclSmEntity.h"
#include "acl/HalyardAclCommon.h"
#include "acl/HalyardAclTypes.h"
#include "acl/HalyardIntfClassData.h"
#include "acl/IngressRaclData.h"
#include "acl/SharedRaclMgmtSm.h"
#include "acl/VfpAclTypeForPort.h"
#include "acl/VlanBlockedSm.h"
#include "platform/acl/AclConfig.h"
#include "platform/acl/AclTypes.h"
#include "platform/acl/ParamConfig.h"
#include "platform/fennel/AclSm.h"
#include "platform/fennel/FennelAclHelper.h"
#include "platform/fennel/FennelCommonSmData.h"
#include "platform/halyard/HalyardAclFeature.h"
#include "platform/halyard/HalyardAclTypeDirectionFeature.h"
#include "platform/halyard/HalyardPort.h"
#include "platform/pylon/IntfId.h"
#include "platform/status/AclHwStatus.h"
#include "platform/status/L3IntfStatus.h"
#include "platform/status/L3SliceAgentStatus.h"
#include "platform/status/StatusDp.h"
#include "platform/status/VlanTopoBlockedStatus.h"
#include "platform/status/VlanTopoSliceStatus.h"
#include "platform/tcam/HalyardBoundedTcamEntryManager.h"
#include "platform/tcam/HalyardCommonSmData.h"
#include "platform/tcam/HalyardTcamEntryManager.h"
#include "platform/tcam/HalyardTcamGroupManager.h"
#include "platform/tcam/HalyardUnboundedTcamEntryManager.h"
#include "platform/vesper/Clock.h"
#include "platform/vesper/Dir.h"
#include "platform/vesper/Entity.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/HashMapGeneric.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/String.h"
#include "platform/vesper/Types.h"
#include "platform/wiring/AgentRecords.h"

namespace Halyard {

class AclHelper;
class HalyardAclTypeDirectionFeatureSm;

// The key of a state machine in AclHelper::halyardAclTypeDirectionFeatureSm.
HalyardAclTypeDirectionFeature typeDirectionFeatureOf( const HalyardAclTypeDirectionFeatureSm& sm );

// The entry managers of AclHelper in declaration order: attribute name, manager kind. hwInit
// fetches each from the TCAM group manager by its assignment number.
#define HALYARD_ACL_ENTRY_MANAGERS( X )                                          \
   X( macAclEntryManager, HalyardUnboundedTcamEntryManager )                     \
   X( macAclVfpEntryManager, HalyardUnboundedTcamEntryManager )                  \
   X( macAclEgressEntryManager, HalyardUnboundedTcamEntryManager )               \
   X( ipAclEntryManager, HalyardUnboundedTcamEntryManager )                      \
   X( ipAclVniEntryManager, HalyardUnboundedTcamEntryManager )                   \
   X( ipAclVfpEntryManager, HalyardUnboundedTcamEntryManager )                   \
   X( ipAclEgressEntryManager, HalyardUnboundedTcamEntryManager )                \
   X( routerAclEntryManager, HalyardUnboundedTcamEntryManager )                  \
   X( routerAclEgressEntryManager, HalyardUnboundedTcamEntryManager )            \
   X( aclMgmtEntryMgr, HalyardBoundedTcamEntryManager )                          \
   X( aclPortBlockingEntryMgr, HalyardBoundedTcamEntryManager )                  \
   X( ip6AclEntryManager, HalyardUnboundedTcamEntryManager )                     \
   X( ip6AclVniEntryManager, HalyardUnboundedTcamEntryManager )                  \
   X( ip6RouterAclEntryManager, HalyardUnboundedTcamEntryManager )               \
   X( ip6AclVfpEntryManager, HalyardUnboundedTcamEntryManager )                  \
   X( ip6StdAclEntryManager, HalyardUnboundedTcamEntryManager )                  \
   X( ip6StdAclVfpEntryManager, HalyardUnboundedTcamEntryManager )               \
   X( ip6AclEgressEntryManager, HalyardUnboundedTcamEntryManager )               \
   X( ip6StdAclPortEgressEntryManager, HalyardUnboundedTcamEntryManager )        \
   X( ip6StdAclRouterEgressEntryManager, HalyardUnboundedTcamEntryManager )      \
   X( ip6RouterAclEgressEntryManager, HalyardUnboundedTcamEntryManager )         \
   X( mirroringAclGroup1EntryManager, HalyardUnboundedTcamEntryManager )         \
   X( mirroringAclGroup2EntryManager, HalyardUnboundedTcamEntryManager )         \
   X( mirroringAclGroup3EntryManager, HalyardUnboundedTcamEntryManager )         \
   X( mirroringAclGroup4EntryManager, HalyardUnboundedTcamEntryManager )         \
   X( urpfTHxV4ExceptionAclGroupEntryManager, HalyardUnboundedTcamEntryManager ) \
   X( urpfTHxV4V6ExceptionAclGroupEntryManager, HalyardUnboundedTcamEntryManager )

class AclHelper : public FennelHelper::AclHelper {
   VESPER_FWK_TYPE( "Halyard::AclHelper" )

 public:
   using Ptr = Vesper::Ptr<AclHelper>;
   using PtrConst = Vesper::Ptr<const AclHelper>;
   using UnboundedManagerPtr = HalyardUnboundedTcamEntryManager::Ptr;
   using TypeDirectionFeatureSmPtr = Vesper::Ptr<HalyardAclTypeDirectionFeatureSm>;
   using TypeDirectionFeatureSmMap =
       Vesper::HashMapGeneric<HalyardAclTypeDirectionFeatureSm, &typeDirectionFeatureOf>;
   using HalyardAclDataMap = Vesper::HashMapGeneric<HalyardAclData, &HalyardAclData::key>;
   using VfpAclTypeForUnitMap = Vesper::HashMapGeneric<VfpAclTypeForPort, &VfpAclTypeForPort::unit>;
   using IntfClassDataMap =
       Vesper::HashMapGeneric<HalyardIntfClassData, &HalyardIntfClassData::unit>;
   // Keyed by HalyardAclFeature.
   using MirroringManagerMap = Vesper::HashMap2018<U32, UnboundedManagerPtr>;
   using UnitDirtyMap = Vesper::HashMap2018<U32, bool>;

   // Mask of the ingress interface classes: an ingress class owns all eight bits.
   static constexpr U8 aclIntfClassMask_ = 0xFF;

   ~AclHelper() override;

   // ==== The base interface, in the order of its virtual table.

   // One-time hardware bring-up (HalyardAclSmBringup.cpp).
   void hwInit() override;
   bool intfSupportsAcl( Pylon::IntfId intfId ) const override;
   Vesper::Name intfLinecardName( Pylon::IntfId intfId ) const override;

   Fennel::AclCreateError createIpAclSubrule( Acl::AclType aclType, const Acl::RuleConfig& rule,
                                              Acl::UniqueId aclId, const AclDataPtr& aclData,
                                              U32 ruleNum, U32 subruleNum, U16 srcL4Port,
                                              U16 srcL4PortMask, U16 dstL4Port, U16 dstL4PortMask,
                                              U16 srcPortLow, U16 srcPortHigh, U16 dstPortLow,
                                              U16 dstPortHigh, U16 ipLen, U16 ipLenMask,
                                              U16 ipLenLow, U16 ipLenHigh, U8 extraTcpFlags,
                                              bool l4Rule, U8 ecnData, U8 ecnMask ) override;
   Fennel::AclCreateError createIpFragRule( const AclDataPtr& aclData, const Acl::RuleConfig& rule,
                                            Acl::UniqueId aclId, U32 ruleNum,
                                            U32 subRuleNum ) override;
   Fennel::AclCreateError createMacAclRule( const Acl::RuleConfig& rule, Acl::UniqueId aclId,
                                            const AclDataPtr& aclData, U32 ruleNum ) override;
   Fennel::AclCreateError createFinalAclRule( Acl::AclType aclType, const AclDataPtr& aclData,
                                              U32 ruleNum ) override;
   bool needToInstallIcmp6NeighborDiscoveryRules() override;

   Fennel::AclCreateError precreateAcl( const AclDataPtr& aclData,
                                        const AclDataStatusPtr& aclDataStatus ) override;
   void destroyAcl( const AclDataPtr& aclData ) override;
   void cleanupAcl( const AclDataPtr& aclData ) override;
   void prepareToCommit() override;
   void commitAcl( const AclDataPtr& aclData ) override;

   void blockIntf( Pylon::IntfId intf, bool block, U32 vlan ) override;

   bool sharedAclDataForVlansSupported( const Fennel::AclKey& aclKey ) override;
   // Always true: router ACLs of sub-interfaces are never shared.
   bool useUnsharedRaclsForSubIntf() override;
   // The agent's own answer, read from the common data.
   bool isVfiForwarding() override;

   bool addIntfToAcl( const Fennel::IntfPairKey& intfPair, const AclDataPtr& aclData,
                      const AclDataStatusPtr& aclDataStatus ) override;
   bool removeIntfFromAcl( const Fennel::IntfPairKey& intfPair, const AclDataPtr& aclData,
                           bool belongsToAnother ) override;
   void updateAclPorts( const AclDataPtr& aclData, bool active ) override;

   // An interface's port changed: makes the port take its class from the port table's group
   // id. An interface gone from the map by now gets a trace and nothing else.
   void handleHalyardIntfToPort( Pylon::IntfId intf ) override;

   bool macRuleExists( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 ruleNum ) override;
   bool ipSubruleExists( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 ruleNum,
                         U32 subRule ) override;
   bool ipPortRangeSubruleExists( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 ruleNum,
                                  U32 subRule, U16 srcStart, U16 srcEnd, bool hasSrc, U16 dstStart,
                                  U16 dstEnd, bool hasDst ) override;

   void verifyMacRuleGeneral( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                              U32 ruleNum ) override;
   void verifyMacRuleAction( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                             U32 ruleNum, Acl::Action action, bool log ) override;
   void verifyMacRuleSrcMac( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                             U32 ruleNum, const Pylon::EthAddr& addr, const Pylon::EthAddr& mask,
                             bool check ) override;
   void verifyMacRuleDstMac( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                             U32 ruleNum, const Pylon::EthAddr& addr, const Pylon::EthAddr& mask,
                             bool check ) override;
   void verifyMacRuleEtherType( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                                U32 ruleNum, U16 etherType, bool check ) override;
   void verifyIpRuleGeneral( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                             U32 ruleNum, U32 subRule ) override;
   void verifyIpRuleAction( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                            U32 ruleNum, U32 subRule, Acl::Action action, bool log ) override;
   void verifyIpRuleIpProto( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                             U32 ruleNum, U32 subRule, U8 proto, bool check ) override;
   void verifyIpRuleSrcIp( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                           U32 ruleNum, U32 subRule, U32 addr, U32 mask, bool check ) override;
   void verifyIpRuleDstIp( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                           U32 ruleNum, U32 subRule, U32 addr, U32 mask, bool check ) override;
   void verifyIpRuleSrcIp6( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                            U32 ruleNum, U32 subRule, const Pylon::Ip6AddrWithMask& addr,
                            bool check ) override;
   void verifyIpRuleSrcIp6FullMask( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                    U32 sequence, U32 ruleNum, U32 subRule,
                                    const Pylon::Ip6AddrWithFullMask& addr, bool check ) override;
   void verifyIpRuleDstIp6( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                            U32 ruleNum, U32 subRule, const Pylon::Ip6AddrWithMask& addr,
                            bool check ) override;
   void verifyIpRuleDstIp6FullMask( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                    U32 sequence, U32 ruleNum, U32 subRule,
                                    const Pylon::Ip6AddrWithFullMask& addr, bool check ) override;
   void verifyIpRuleDscp( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                          U32 ruleNum, U32 subRule, U8 dscp, bool check ) override;
   void verifyIpRuleTcIp6( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                           U32 ruleNum, U32 subRule, U8 trafficClass, bool check ) override;
   void verifyIpRuleFragments( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                               U32 ruleNum, U32 subRule, bool notFirst, bool nonOrFirst ) override;
   void verifyIpRuleTcpFlags( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                              U32 ruleNum, U32 subRule, U8 tcpFlags, bool check ) override;
   void verifyIpRuleIcmp( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                          U32 ruleNum, U32 subRule, U8 icmpType, U8 icmpCode, bool checkType,
                          bool checkCode ) override;
   void verifyIpRuleSrcPort( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                             U32 ruleNum, U32 subRule, U16 start, U16 end, bool check ) override;
   void verifyIpRuleDstPort( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                             U32 ruleNum, U32 subRule, U16 start, U16 end, bool check ) override;
   void verifyIpRuleIpLen( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                           U32 ruleNum, U32 subRule, U16 start, U16 end, bool check ) override;
   void verifyAclGeneral( const AclDataPtrConst& aclData ) override;
   void verifyDropAllRule( const AclDataPtrConst& aclData, U32 ruleNum ) override;

   void showAclTypeHeader( U32 fd, U32 unit, Acl::AclType aclType ) override;
   void showAclHeader( U32 fd, U32 unit, bool verbose, const AclDataPtrConst& aclData ) override;
   void showMacAclRule( U32 fd, U32 unit, const AclDataPtrConst& aclData, U32 seq,
                        Acl::UniqueId uniqueId ) override;
   void showIpAclRule( U32 fd, U32 unit, const AclDataPtrConst& aclData, U32 seq,
                       Acl::UniqueId uniqueId ) override;
   void showDropEntry( U32 fd, U32 unit, const AclDataPtrConst& aclData ) override;
   void showSharedRaclData( U32 fd, U32 unit ) override;

   bool aclCountersAllocated( const AclDataPtrConst& aclData ) override;
   U64 aclRuleCountersSinceLastPoll( const AclDataPtrConst& aclData, U32 sequence,
                                     Acl::UniqueId aclId ) override;

   // The base stores a changed flag and notifies; then handleDirty runs. Setting the value
   // that stands does nothing at all.
   void dirtyIs( bool dirty ) override;

   // ==== Operations this back-end adds, in this order: the seams of a chip-specific subclass,
   // called only by this library.

   virtual void programRaclIdOrVlanId( const AclDataPtr& aclData, U32 entry, U32 unit );
   virtual Fennel::AclCreateError programUdfData(
       U32 unit, HalyardTcamEntryManager::Ptr tcamEntryManager, const AclDataPtr& aclData,
       const AclUnitData::Ptr& unitData, const Acl::RuleConfig& rule, U32 ruleNum, U32 entry );
   virtual CommonRuleData::Ptr commonCreateEntry( const AclDataPtr& aclData,
                                                  const AclUnitData::Ptr& unitData,
                                                  const Acl::RuleConfig& rule, Acl::Action action,
                                                  bool log, Acl::UniqueId aclId, U32 ruleNum,
                                                  U32 subRuleNum, HalyardAclFeature feature );
   virtual Fennel::AclCreateError createIpAclSubruleForUnit(
       Acl::AclType aclType, const AclUnitData::Ptr& unitData, const Acl::RuleConfig& rule,
       Acl::UniqueId aclId, const AclDataPtr& aclData, U32 ruleNum, U32 subruleNum, U16 srcL4Port,
       U16 srcL4PortMask, U16 dstL4Port, U16 dstL4PortMask, U16 srcPortLow, U16 srcPortHigh,
       U16 dstPortLow, U16 dstPortHigh, U16 ipLen, U16 ipLenMask, U16 ipLenLow, U16 ipLenHigh,
       U8 tcpFlags, bool l4Rule, HalyardAclFeature feature, U8 ecnData, U8 ecnMask );
   virtual Fennel::AclCreateError createMacAclRuleForUnit(
       const AclUnitData::Ptr& unitData, const Acl::RuleConfig& rule, Acl::UniqueId aclId,
       const AclDataPtr& aclData, U32 ruleNum, U32 subruleNum, HalyardAclFeature feature );
   virtual Fennel::AclCreateError validateIpAclSubruleForUnit(
       Acl::AclType aclType, const AclUnitData::Ptr& unitData, const Acl::RuleConfig& rule,
       Acl::UniqueId aclId, const AclDataPtr& aclData, U32 ruleNum, U32 subruleNum, U16 srcL4Port,
       U16 srcL4PortMask, U16 dstL4Port, U16 dstL4PortMask, U16 srcPortLow, U16 srcPortHigh,
       U16 dstPortLow, U16 dstPortHigh, U16 ipLen, U16 ipLenMask, U16 ipLenLow, U16 ipLenHigh,
       U8 tcpFlags, bool l4Rule, HalyardAclFeature feature, U8 ecnData, U8 ecnMask );
   // Called by hwInit once per unit (HalyardAclSmBringup.cpp).
   virtual void processInit( U32 unit );
   virtual void createCommonUnitData( const AclUnitData::Ptr& unitData );
   virtual Fennel::AclCreateError createIpFragRuleForUnit(
       const AclDataPtr& aclData, const AclUnitData::Ptr& unitData, const Acl::RuleConfig& rule,
       Acl::UniqueId aclId, U32 ruleNum, U32 subRuleNum, HalyardAclFeature feature );
   virtual Fennel::AclCreateError createFinalAclRuleForUnit( Acl::AclType aclType,
                                                             const AclDataPtr& aclData,
                                                             const HalyardAclData::Ptr& saclData,
                                                             U32 ruleNum,
                                                             HalyardAclFeature feature );
   virtual void destroyAclEntries( const AclDataPtr& aclData, const HalyardAclData::Ptr& saclData,
                                   HalyardAclFeature feature );

   // ==== Rules, commit and enable (HalyardAclSmEntries.cpp, HalyardAclSmMacRules.cpp,
   // HalyardAclSmCommit.cpp).

   // The priority of a rule's entries among the ACLs of one group: the ACL's priority number
   // above the rule number counted down from 8191, so that a lower rule number and a higher
   // ACL priority both rank higher; plus 0x80000000, all modulo 2^32. `subRuleNum` takes no
   // part. Entries take their manager's priority instead (commonCreateEntry).
   // REQUIRES: ruleNum < 8192 (the process stops otherwise).
   S32 rulePriority( const AclDataPtrConst& aclData, U32 ruleNum, U32 subRuleNum ) const;
   // Packs the entries of every ACL group of every unit, in a fixed order of the managers.
   void compressAllGroups();
   // Switches the entries of one committed rule on the unit on or off, VFP entries excepted:
   // they select ports by class and carry no port bitmap. Without installEntries it only
   // traces.
   void enableAclEntriesIs( const AclRuleData::Ptr& rule, U32 unit, bool enable );

   // ==== Binding (HalyardAclSmBinding.cpp). An ACL is on every unit once an interface binds
   // it; the answers say whether the change needs a reapply of the ACL (true) or only a new
   // port mask or port class (false).

   // The port of `intf` joins the ACL on its unit: active ports, port class, the port's VFP
   // claim. True (the unit's `dirty`) when the ACL must be rebuilt: the port's VFP lookup
   // belongs to another ACL type while this ACL uses VFP, or an egress ACL without a class
   // holds its ports by one entry per port.
   // REQUIRES: `unit` is the unit of the port of `intf` (the process stops otherwise).
   bool addIntfToAclInUnit( U32 unit, Pylon::IntfId intf, const AclDataPtr& aclData,
                            const HalyardAclData::Ptr& saclData, HalyardAclFeature feature );
   // The ACL is present on `unit` too (a unit that holds none of its ports). An ingress copy
   // goes dirty with `dirtyFlag`, an egress copy without a class always. The unit's `dirty`.
   bool addAclDataToUnit( U32 unit, const AclDataPtr& aclData, const HalyardAclData::Ptr& saclData,
                          bool dirtyFlag );
   // The port of `intf` leaves the ACL. True when an ACL became dirty: this one (egress without
   // a class: a copy of its entries must go), or one waiting for the VFP lookup this ACL gave
   // up ("Letting "). `belongsToAnother`: the port passes straight to another ACL of the same
   // type and direction, which sets class and claim itself.
   // REQUIRES: the ACL has unit data on the port's unit unless `belongsToAnother`.
   bool removeIntfFromAclInUnits( Pylon::IntfId intf, const AclDataPtr& aclData,
                                  const HalyardAclData::Ptr& saclData, bool belongsToAnother,
                                  HalyardAclFeature feature );
   // Shared router ACLs (VLAN 4095) bind through their identifier instead.
   bool addIntfToSharedAcl( Pylon::IntfId intf, const AclDataPtr& aclData );
   bool removeIntfFromSharedAcl( Pylon::IntfId intf, const AclDataPtr& aclData,
                                 bool belongsToAnother );
   void removeIntfClassIdForVlan( Pylon::IntfId intf, const AclDataPtr& aclData );

   // ==== Port masks (HalyardAclSmPortUpdate.cpp).

   // Writes the port mask of every unit of an ingress ACL that needs it onto its IFP entries,
   // in the order that keeps each port on a prefix of the rule list: with permitDuringUpdate
   // every entry is switched off from the last rule up, then rewritten and reinstalled from
   // the first; else from the first rule when `active` (ports come), from the last when not
   // (ports go). `modifyPortMasks` rebuilds the masks from the session source lists first, and
   // `subIntf` picks the sub-interface entries and mask over the others. Egress ACLs have no
   // port bitmap: nothing happens for them. A unit whose ACL is not committed (a pass under
   // way, or one refused for want of room) gets its keys written and nothing installed or
   // switched: its entries reach the TCAM through commit alone, all of them or none.
   void updateAclPortsInUnits( const HalyardAclData::Ptr& saclData, bool active,
                               bool modifyPortMasks, bool subIntf );

   // ==== The records this helper was built with (never changed).

   const HalyardVlanTopo::VlanTopoSliceStatus::Ptr& vlanTopoSliceStatus() const {
      return vlanTopoSliceStatus_;
   }
   const HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst& vlanTopoBlockedStatus() const {
      return vlanTopoBlockedStatus_;
   }
   const HalyardCommonSmData::Ptr& hcsd() const { return hcsd_; }
   const HalyardTcamGroupManager::Ptr& tcamGroupManager() const { return tcamGroupManager_; }
   const Acl::Config::PtrConst& mainConfig() const { return mainConfig_; }
   const Acl::ParamConfig::PtrConst& aclParamConfig() const { return aclParamConfig_; }
   const Acl::StatusDp::Ptr& status() const { return status_; }
   const HalyardCentral::AclHwStatus::PtrConst& aclHwStatus() const { return aclHwStatus_; }
   const HalyardL3::L3SliceAgentStatus::Ptr& halyardSliceAgentStatus() const {
      return halyardSliceAgentStatus_;
   }
   const HalyardL3::L3IntfStatus::PtrConst& l3IntfStatus() const { return l3IntfStatus_; }
   bool hasFabric() const { return hasFabric_; }

   // ==== Entry managers, null until hwInit takes them.
#define HALYARD_ACL_ENTRY_MANAGER_ACCESSORS( name, Kind ) \
   const Kind::Ptr& name() const {                        \
      return name##_;                                     \
   }                                                      \
   void name##Is( Kind::Ptr manager ) {                   \
      name##_ = std::move( manager );                     \
   }
   HALYARD_ACL_ENTRY_MANAGERS( HALYARD_ACL_ENTRY_MANAGER_ACCESSORS )
#undef HALYARD_ACL_ENTRY_MANAGER_ACCESSORS

   // ==== Owned objects and collections.

   const SharedRaclMgmtSm::Ptr& sharedRaclMgmtSm() const {
      return sharedRaclMgmtSm_;
   }
   // The standing manager when it was built from these inputs; else a new one, with
   // notifications on, replaces it.
   SharedRaclMgmtSm::Ptr sharedRaclMgmtSmIs( Acl::ParamConfig::PtrConst aclParamConfig,
                                             HalyardCentral::AclHwStatus::PtrConst aclHwStatus,
                                             IngressRaclData::Ptr ingressRaclData,
                                             HalyardL3::L3IntfStatus::PtrConst l3IntfStatus );
   SharedRaclMgmtSm::Ptr sharedRaclMgmtSmDel();

   // The manager of a mirroring feature's TCAM group; null when absent.
   UnboundedManagerPtr mirroringAclEntryManager( HalyardAclFeature feature ) const;
   const MirroringManagerMap& mirroringAclEntryManager() const {
      return mirroringAclEntryManager_;
   }
   bool mirroringAclEntryManagerHas( HalyardAclFeature feature ) const {
      return mirroringAclEntryManager_.has( feature );
   }
   // A null manager deletes the member; otherwise it is added or replaced.
   void mirroringAclEntryManagerIs( HalyardAclFeature feature, UnboundedManagerPtr manager );
   void mirroringAclEntryManagerDel( HalyardAclFeature feature ) {
      mirroringAclEntryManager_.del( feature );
   }
   void mirroringAclEntryManagerDelAll() {
      mirroringAclEntryManager_.clear();
   }

   // The type-direction-feature state machines (HalyardAclTypeDirectionFeatureSm.h).
   TypeDirectionFeatureSmPtr halyardAclTypeDirectionFeatureSm(
       const HalyardAclTypeDirectionFeature& key ) const;
   const TypeDirectionFeatureSmMap& halyardAclTypeDirectionFeatureSm() const {
      return halyardAclTypeDirectionFeatureSm_;
   }
   bool halyardAclTypeDirectionFeatureSmHas( const HalyardAclTypeDirectionFeature& key ) const;
   // The standing machine of the key, or a new one with notifications on. A standing machine
   // built with another helper or manager raises Vesper::NameInUseException naming the first
   // parameter that differs ("_aclHelper", "_entryManager", "_vfpEntryManager",
   // "_vniEntryManager", "_stdEntryManager", "_stdVfpEntryManager", "_routerEntryManager",
   // "_stdRouterEntryManager").
   TypeDirectionFeatureSmPtr halyardAclTypeDirectionFeatureSmIs(
       const HalyardAclTypeDirectionFeature& key, Vesper::BackPtr<AclHelper> aclHelper,
       UnboundedManagerPtr entryManager, UnboundedManagerPtr vfpEntryManager,
       UnboundedManagerPtr vniEntryManager, UnboundedManagerPtr stdEntryManager,
       UnboundedManagerPtr stdVfpEntryManager, UnboundedManagerPtr routerEntryManager,
       UnboundedManagerPtr stdRouterEntryManager );
   TypeDirectionFeatureSmPtr halyardAclTypeDirectionFeatureSmDel(
       const HalyardAclTypeDirectionFeature& key );
   void halyardAclTypeDirectionFeatureSmDelAll();
   // Plain lookup; null when absent.
   TypeDirectionFeatureSmPtr getHalyardAclTypeDirectionFeatureSm( Acl::AclType type,
                                                                  Acl::AclDirection direction,
                                                                  HalyardAclFeature feature ) const;
   // The machines of ACLs of a mirroring or uRPF exception feature, made and dropped as such
   // ACLs come and go (HalyardAclTypeDirectionFeatureSm.cpp).
   void setMirroringHalyardAclTypeDirectionFeatureSm( Acl::AclType type,
                                                      Acl::AclDirection direction,
                                                      HalyardAclFeature feature );
   void clearMirroringHalyardAclTypeDirectionFeatureSm( Acl::AclType type,
                                                        Acl::AclDirection direction,
                                                        HalyardAclFeature feature );
   void setUrpfHalyardAclTypeDirectionFeatureSm( Acl::AclType type, Acl::AclDirection direction,
                                                 HalyardAclFeature feature );
   void clearUrpfHalyardAclTypeDirectionFeatureSm( Acl::AclType type, Acl::AclDirection direction,
                                                   HalyardAclFeature feature );
   // A state machine with room on the unit heard one of its TCAM managers, or the unit's
   // range checkers, change between full and not full: when an ACL waits on the unit (the
   // unit is dirty), the generic layer is asked for a deferred update pass
   // (HalyardAclSmExhaustion.cpp).
   void handleTcamExhaustion( U32 unit );

   // The ACL records by key.
   HalyardAclData::Ptr halyardAclData( const Fennel::AclKey& key ) const {
      return halyardAclData_.find( key );
   }
   const HalyardAclDataMap& halyardAclData() const {
      return halyardAclData_;
   }
   bool halyardAclDataHas( const Fennel::AclKey& key ) const {
      return halyardAclData_.has( key );
   }
   // The standing record of the key, or a new one with notifications on.
   HalyardAclData::Ptr halyardAclDataIs( const Fennel::AclKey& key );
   HalyardAclData::Ptr halyardAclDataDel( const Fennel::AclKey& key ) {
      RuleRecords::changed();
      return halyardAclData_.del( key );
   }
   void halyardAclDataDelAll();
   // The rule record of `ruleNum` of the ACL on the unit; null when any link is missing.
   AclRuleData::Ptr getAclRuleData( const AclDataPtrConst& aclData, U32 unit, U32 ruleNum ) const;

   // Per unit: VFP types of ports.
   VfpAclTypeForPort::Ptr vfpAclTypeForUnit( U32 unit ) const {
      return vfpAclTypeForUnit_.find( unit );
   }
   const VfpAclTypeForUnitMap& vfpAclTypeForUnit() const {
      return vfpAclTypeForUnit_;
   }
   bool vfpAclTypeForUnitHas( U32 unit ) const {
      return vfpAclTypeForUnit_.has( unit );
   }
   // The standing record of the unit, or a new one with notifications on.
   VfpAclTypeForPort::Ptr vfpAclTypeForUnitIs( U32 unit );
   VfpAclTypeForPort::Ptr vfpAclTypeForUnitDel( U32 unit ) {
      return vfpAclTypeForUnit_.del( unit );
   }
   void vfpAclTypeForUnitDelAll();

   // Per unit: the free ingress interface classes.
   HalyardIntfClassData::Ptr halyardIntfClassData( U32 unit ) const {
      return halyardIntfClassData_.find( unit );
   }
   const IntfClassDataMap& halyardIntfClassData() const {
      return halyardIntfClassData_;
   }
   bool halyardIntfClassDataHas( U32 unit ) const {
      return halyardIntfClassData_.has( unit );
   }
   // The standing record of the unit, or a new, empty one with notifications on.
   HalyardIntfClassData::Ptr halyardIntfClassDataIs( U32 unit );
   HalyardIntfClassData::Ptr halyardIntfClassDataDel( U32 unit ) {
      return halyardIntfClassData_.del( unit );
   }
   void halyardIntfClassDataDelAll();

   U8 aclIntfClassMask() const {
      return aclIntfClassMask_;
   }

   // Units with ACL changes waiting for a reapply; false when absent.
   bool unitDirty( U32 unit ) const;
   const UnitDirtyMap& unitDirty() const {
      return unitDirty_;
   }
   bool unitDirtyHas( U32 unit ) const {
      return unitDirty_.has( unit );
   }
   void unitDirtyIs( U32 unit, bool dirty ) {
      unitDirty_.set( unit, dirty );
   }
   void unitDirtyDel( U32 unit ) {
      unitDirty_.del( unit );
   }
   void unitDirtyDelAll() {
      unitDirty_.clear();
   }

   // Entries are written to the hardware; false under simulation (set by hwInit).
   bool installEntries() const {
      return installEntries_;
   }
   void installEntriesIs( bool install ) {
      installEntries_ = install;
   }

   const VlanBlockedSm::Ptr& vlanBlockedSm() const {
      return vlanBlockedSm_;
   }
   // The standing machine when it has these three inputs; else a new one, with notifications
   // on, replaces it.
   VlanBlockedSm::Ptr vlanBlockedSmIs(
       HalyardCommonSmData::PtrConst hcsd, Vesper::BackPtr<AclHelper> aclHelper,
       HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst vlanTopoBlockedStatus );
   VlanBlockedSm::Ptr vlanBlockedSmDel();

   const IngressRaclData::Ptr& ingressRaclData() const {
      return ingressRaclData_;
   }
   // Makes the single store; no effect when it stands.
   IngressRaclData::Ptr ingressRaclDataIs();
   IngressRaclData::Ptr ingressRaclDataDel();

   bool initialized() const {
      return initialized_;
   }

   // ==== Port classes and router ACL sharing.

   // Writes `intfClass` into the bits of the port's field-processor class (egress class for
   // an egress ACL, ingress otherwise) that belong to the state machine of (aclType,
   // direction, feature), keeping the bits of other types. The class is not cut to those
   // bits: a caller passes a class of its own field, or 0 to clear. On ingress the machine
   // owns all eight bits. SDK failures are fatal.
   // REQUIRES: the state machine of (aclType, direction, feature) exists.
   void doSetPortClass( Acl::AclType aclType, Acl::AclDirection direction, U32 unit, U32 port,
                        U8 intfClass, HalyardAclFeature feature );

   // The hardware says it can share ingress router ACLs across VLANs.
   bool raclSharingCliSupport() const;
   // The store of shared router ACL identifiers may be filled: the hardware's answer, forced
   // true on a fixed system (no fabric) with a chip of group C, D or F.
   bool raclSharingSupport() const;
   // Sharing is on: the configuration's setting, forced true as above.
   bool raclSharingConfig() const;

 protected:
   AclHelper( HalyardVlanTopo::VlanTopoSliceStatus::Ptr vlanTopoSliceStatus,
              HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst vlanTopoBlockedStatus,
              HalyardCommonSmData::Ptr hcsd, HalyardTcamGroupManager::Ptr tcamGroupManager,
              Acl::Config::PtrConst mainConfig, Acl::ParamConfig::PtrConst aclParamConfig,
              Acl::StatusDp::Ptr status, HalyardCentral::AclHwStatus::PtrConst aclHwStatus,
              HalyardL3::L3SliceAgentStatus::Ptr halyardSliceAgentStatus,
              HalyardL3::L3IntfStatus::PtrConst l3IntfStatus, bool hasFabric );

 private:
   // The ACL record of `aclData` for the counter poll; null when there is none.
   HalyardAclData* counterPollRecord( const AclDataPtrConst& aclData );
   friend Ptr aclHelperFactory( HalyardVlanTopo::VlanTopoSliceStatus::Ptr,
                                HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst,
                                HalyardCommonSmData::Ptr, HalyardTcamGroupManager::Ptr,
                                Acl::Config::PtrConst, Acl::ParamConfig::PtrConst,
                                Acl::StatusDp::Ptr, HalyardCentral::AclHwStatus::PtrConst,
                                HalyardL3::L3SliceAgentStatus::Ptr,
                                HalyardL3::L3IntfStatus::PtrConst, bool );

   // The TCAM group of a mirroring feature: its manager, group manager and group number.
   struct MirroringGroup {
      UnboundedManagerPtr manager;
      HalyardTcamGroupManager::Ptr gm;
      U8 groupId;
   };
   // Stops the process unless `feature` is a mirroring feature whose manager stands on a
   // mirroring group.
   MirroringGroup mirroringGroup( HalyardAclFeature feature ) const;

   void handleInitialized();
   // After a change of the dirty flag: a clean helper has no dirty unit.
   void handleDirty();

   // The steps of precreateAcl on one unit (HalyardAclSmPrecreate.cpp).
   void precreateUnit( const HalyardAclData& saclData, const AclUnitData::Ptr& unitData,
                       const HalyardAclTypeDirectionFeatureSm& sm, bool portAcl );
   bool vfpPortConflictFound( const HalyardAclData& saclData, const AclUnitData& unitData ) const;
   bool intfClassSettled( const HalyardAclData& saclData, const AclUnitData::Ptr& unitData,
                          const HalyardAclTypeDirectionFeatureSm& sm, bool oneActivePort,
                          bool useVfp );
   void vfpPortClaimsSettled( Acl::AclType type, const AclUnitData& unitData, bool useVfp );

   // Binding (HalyardAclSmBinding.cpp): the unit data of the ACL on `unit`, with its rule
   // programmer, made when absent.
   AclUnitData::Ptr unitDataWithCommon( const HalyardAclData::Ptr& saclData, U32 unit );
   // The first ACL of another type bound to `intf` that waits for the VFP lookup of the port
   // on `unit` is marked dirty to take it; true when one was.
   bool vfpHandedOver( Pylon::IntfId intf, const HalyardAclData& saclData, U32 unit );
   // The key of the port ACL `name` of `type` bound in `direction`, as the generic layer makes
   // it: its list's standard flag, no VLAN, the default group.
   Fennel::AclKey portAclKey( const Vesper::Name& name, Acl::AclType type,
                              Acl::AclDirection direction ) const;

   // Port masks (HalyardAclSmPortUpdate.cpp): the mask of one unit rebuilt from its session
   // source lists; the one to write.
   bcm_pbmp_t sessionPortMasksRebuilt( AclUnitData& unitData, bool subIntf );

   // Teardown (HalyardAclSmTeardown.cpp): the unit's class back to the pool of the ACL's
   // direction (ingress: the unit's; egress: the type's), and off every port that carries it.
   // `prefix` leads the trace line.
   void intfClassFreed( AclUnitData& unitData, const HalyardAclTypeDirectionFeatureSm& sm,
                        const char* prefix );
   // The ACL's VFP claims of the unit's active ports; claims of other types stay.
   void vfpPortClaimsReleased( Acl::AclType type, const AclUnitData& unitData );
   // Whether a unit's chip forces router ACL sharing on; traces `chips` when it does.
   bool raclSharingForcedByChip( U32 unit, const char* chips ) const;

   const HalyardVlanTopo::VlanTopoSliceStatus::Ptr vlanTopoSliceStatus_;
   const HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst vlanTopoBlockedStatus_;
   const HalyardCommonSmData::Ptr hcsd_;
   const HalyardTcamGroupManager::Ptr tcamGroupManager_;
   const Acl::Config::PtrConst mainConfig_;
   const Acl::ParamConfig::PtrConst aclParamConfig_;
   const Acl::StatusDp::Ptr status_;
   const HalyardCentral::AclHwStatus::PtrConst aclHwStatus_;
   const HalyardL3::L3SliceAgentStatus::Ptr halyardSliceAgentStatus_;
   const HalyardL3::L3IntfStatus::PtrConst l3IntfStatus_;
   const bool hasFabric_;

#define HALYARD_ACL_ENTRY_MANAGER_MEMBER( name, Kind ) Kind::Ptr name##_;
   HALYARD_ACL_ENTRY_MANAGERS( HALYARD_ACL_ENTRY_MANAGER_MEMBER )
#undef HALYARD_ACL_ENTRY_MANAGER_MEMBER

   SharedRaclMgmtSm::Ptr sharedRaclMgmtSm_;
   MirroringManagerMap mirroringAclEntryManager_;
   TypeDirectionFeatureSmMap halyardAclTypeDirectionFeatureSm_;
   HalyardAclDataMap halyardAclData_;
   // The ACL record that the last counter poll read: the generic layer polls an ACL rule by
   // rule, and each call would otherwise look the same record up again. The AclData is held
   // so that its address names it; the record is trusted while RuleRecords::generation stands.
   struct CounterPollAcl {
      AclDataPtrConst aclData;
      HalyardAclData* record = nullptr;
      U64 generation = ~U64( 0 );
   };
   CounterPollAcl counterPollAcl_;
   VfpAclTypeForUnitMap vfpAclTypeForUnit_;
   IntfClassDataMap halyardIntfClassData_;
   UnitDirtyMap unitDirty_;
   bool installEntries_ = false;
   VlanBlockedSm::Ptr vlanBlockedSm_;
   IngressRaclData::Ptr ingressRaclData_;
   bool initialized_ = false;
};

// Builds the helper (its constructor ends in handleInitialized) and turns its notifications
// on. The agent calls this by name.
AclHelper::Ptr aclHelperFactory(
    HalyardVlanTopo::VlanTopoSliceStatus::Ptr vlanTopoSliceStatus,
    HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst vlanTopoBlockedStatus,
    HalyardCommonSmData::Ptr hcsd, HalyardTcamGroupManager::Ptr tcamGroupManager,
    Acl::Config::PtrConst mainConfig, Acl::ParamConfig::PtrConst aclParamConfig,
    Acl::StatusDp::Ptr status, HalyardCentral::AclHwStatus::PtrConst aclHwStatus,
    HalyardL3::L3SliceAgentStatus::Ptr halyardSliceAgentStatus,
    HalyardL3::L3IntfStatus::PtrConst l3IntfStatus, bool hasFabric );

// Set, in the port table and in the L-port table, the bit that makes the hardware take the
// class of the port `sp` (unit in the low 16 bits, port in the high 16) from the port table's
// group id: read the row, set the field to 1, write the row back. The L-port form holds that
// table's own lock for it. They call the SDK directly, so they run inside the bracket of an SDK
// form, with the activity lock given up, and under the unit's port lock:
//    SDK_NO_CHECK( PORT_LOCK_INTERNAL_NO_CHK( sp.unit(), setPortTabUsePortTableGroupId( sp ) ) )
// The result is the last SDK code, which the callers ignore by design; a row that cannot be
// read is not written back.
int setPortTabUsePortTableGroupId( HalyardTypes::HalyardPort sp );
int setLPortTabUsePortTableGroupId( HalyardTypes::HalyardPort sp );

}  // namespace Halyard

// Last, so that the state machine's header may include this one for AclHelper whichever of
// the two a reader includes first: AclHelper holds its machines by counted pointer, and every
// user that makes or drops a helper needs the machine's full class.
#include "acl/HalyardAclTypeDirectionFeatureSm.h"
