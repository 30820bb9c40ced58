// FennelHelper::AclHelper: the abstract base of an ACL back-end, as the
// generic ACL layer (Fennel::AclSm) sees it. The generic layer decides which
// ACLs, rules and bindings must exist and calls the virtual operations below
// in the order that the back-end depends on; the back-end derives from this
// class, overrides the operations it serves and tells what it can do through
// the capability flags.
//
// Virtual operations, in the order of the virtual table (the runtime's first,
// from Vesper::PtrInterface):
//    notifieeList, hasNotificationActiveIs, zeroReferencesIs, fwkType, destructor,
//    supportedTcpFlagsDefault, hwInit, verifyHwInit, aclOwner, aclGroup,
//    intfSupportsAcl, intfLinecardName, logAclUnsupportedHardware,
//    createIpAclSubrule, createIpFragRule, createMacAclRule, createFinalAclRule,
//    needToInstallIcmp6NeighborDiscoveryRules, precreateAcl, destroyAcl, removeAcl,
//    cleanupAcl, prepareToCommit, commitAcl, batchCommitAcls, blockIntf,
//    sharedAclDataForVlansSupported, routedPortAclSharingSupported,
//    subIntfAclSharingSupported, useUnsharedRaclsForSubIntf, isVfiForwarding,
//    addIntfToAcl, removeIntfFromAcl, updateAclPorts, createAclsWithExtActions,
//    addAclWithExtActions, createMirrorDestinationAcl, removeMirrorDestinationAcl,
//    deleteAclRuleWithExtActions, commitAclWithExtActions, deleteAcl, deleteAclRule,
//    handleHalyardIntfToPort, macRuleExists, ipSubruleExists, ipPortRangeSubruleExists,
//    verifyMacRuleGeneral, verifyMacRuleAction, verifyMacRuleSrcMac, verifyMacRuleDstMac,
//    verifyMacRuleEtherType, verifyIpRuleGeneral, verifyIpRuleAction, verifyIpRuleIpProto,
//    verifyIpRuleSrcIp, verifyIpRuleDstIp, verifyIpRuleSrcIp6, verifyIpRuleSrcIp6FullMask,
//    verifyIpRuleDstIp6, verifyIpRuleDstIp6FullMask, verifyIpRuleDscp, verifyIpRuleTcIp6,
//    verifyIpRuleFragments, verifyIpRuleTcpFlags, verifyIpRuleIcmp, verifyIpRuleSrcPort,
//    verifyIpRuleDstPort, verifyIpRuleIpLen, verifyAclGeneral, verifyDropAllRule,
//    verifyIpDIRule, verifyMacDIRule, showAclTypeHeader, showAclHeader, showMacAclRule,
//    showIpAclRule, showDropEntry, showSharedRaclData, aclCountersAllocated,
//    aclRuleCountersSinceLastPoll, aclRuleCounterPerChipSinceLastPoll,
//    doConfigureTapAggMode, handleDeepInspSkipL2, handleDeepInspSkipL4,
//    verifyDeepInspSkipL2, verifyDeepInspSkipL4, subIntfAclAsPacl, dirtyIs.
// New virtual operations go after dirtyIs, so that this order stays.
//
// What the base does itself:
//  - Operations that only hardware knowledge can serve (hwInit, the create,
//    commit, binding, blocking, verify-a-rule, show and counter operations)
//    stop the process with an assertion that names the operation: a back-end
//    must override every one of them. Of the questions, intfSupportsAcl
//    answers true and the two sharing questions that a back-end need not
//    serve (routed ports, sub-interfaces) answer false.
//  - Base verification (verifyHwInit, verifyIpDIRule, verifyMacDIRule,
//    verifyDeepInsp...) has nothing to report; removeAcl and batchCommitAcls
//    do nothing; ACLs with extended actions, tap aggregation and deep
//    inspection are refused (the operation answers false, and a trace line
//    says so); per-chip counters are not served (no value).
//  - It keeps the state that the back-end reports to the generic layer:
//    dirty, dirtyAcl, unitError, publishUnitError, needsDeferredUpdate,
//    asyncAclConfig, aclIntfBlockedStatus, and the capability flags.
//    Each setter tells the notifiees once per real change.
//  - It holds the generic inputs that the back-end reads: fcsd (the generic
//    layer's common data) and intfConfig (the interface bindings), handed
//    over when the generic machine is built (Fennel::AclSm).
//
// Threads: the agent's activity thread, with the activity lock held.
#pragma once

#include <bitset>
#include <optional>
#include <string>
#include <utility>

#include "platform/acl/AclTypes.h"
#include "platform/acl/IntfConfig.h"
#include "platform/acl/ParamConfig.h"
#include "platform/acl/RuleConfig.h"
#include "platform/acl/UniqueId.h"
#include "platform/fennel/AclCreateError.h"
#include "platform/fennel/AclData.h"
#include "platform/fennel/AclDataStatus.h"
#include "platform/fennel/AclHelperCapabilities.h"
#include "platform/fennel/AclKey.h"
#include "platform/fennel/FennelCommonSmData.h"
#include "platform/fennel/IntfPairKey.h"
#include "platform/pylon/EthAddr.h"
#include "platform/pylon/IntfId.h"
#include "platform/pylon/Ip6Addr.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/String.h"
#include "platform/vesper/Types.h"

namespace FennelHelper {

class AclHelper : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "FennelHelper::AclHelper" )

 public:
   using Ptr = Vesper::Ptr<AclHelper>;
   using PtrConst = Vesper::Ptr<const AclHelper>;
   using AclDataPtr = Vesper::Ptr<Fennel::AclData>;
   using AclDataPtrConst = Vesper::Ptr<const Fennel::AclData>;
   using AclDataStatusPtr = Vesper::Ptr<Fennel::AclDataStatus>;
   using DirtyAclSet = Vesper::HashMap2018<Fennel::AclKey, bool>;
   using UnitErrorMap = Vesper::HashMap2018<Vesper::Name, Fennel::AclCreateError>;
   using PublishUnitErrorMap = Vesper::HashMap2018<Vesper::Name, bool>;
   using IntfBlockedMap = Vesper::HashMap2018<Pylon::IntfId, bool>;

   // The sequence number that the show operations give an ACL's final drop rule.
   static constexpr U32 dropRuleSeq = 0xFFFFFFFF;

   class NotifieeConst : public Vesper::NotifieeBase<AclHelper> {
    public:
      virtual void onDirty() {}
      virtual void onDirtyAcl( const Fennel::AclKey& ) {}
      virtual void onUnitError( const Vesper::Name& /*chipName*/ ) {}
      virtual void onPublishUnitError( const Vesper::Name& /*chipName*/ ) {}
      virtual void onNeedsDeferredUpdate() {}
      virtual void onAsyncAclConfig() {}
      virtual void onAclIntfBlockedStatus( Pylon::IntfId ) {}
      virtual void onCapability( AclCapability ) {}
      virtual void onSupportedTcpFlags() {}
      virtual void onInstallImplicitIcmp6Rules() {}
   };

   ~AclHelper() override;

   // --- Virtual operations, in table order (see the head of this file). ---

   // The TCP control bits (Acl::tcpFlag... values) that rules may match when the
   // back-end has not set supportedTcpFlags; the base allows all six.
   virtual U8 supportedTcpFlagsDefault() const;
   // One-time hardware bring-up: sets the capability flags first. Back-end only.
   virtual void hwInit();
   // Reads the bring-up entries back; findings go to the verification sink.
   virtual void verifyHwInit();
   // The ACL whose entries serve `aclKey` on `intfId`; the base: `aclKey` itself.
   virtual Fennel::AclKey aclOwner( Pylon::IntfId intfId, const Fennel::AclKey& aclKey ) const;
   // The ACL group of an interface in a direction; the base: the default group.
   virtual std::string aclGroup( Pylon::IntfId intfId, Acl::AclDirection direction ) const;
   // Whether ACLs may be applied on the interface; the base: true.
   virtual bool intfSupportsAcl( Pylon::IntfId intfId ) const;
   virtual Vesper::Name intfLinecardName( Pylon::IntfId intfId ) const;
   // Records that an ACL could not be applied for want of hardware (a trace line).
   virtual void logAclUnsupportedHardware( const Vesper::Name& aclName, Pylon::IntfId intfId );

   // Rule creation, in rule order; see the back-end for the meaning of the terms.
   virtual Fennel::AclCreateError createIpAclSubrule(
       Acl::AclType aclType, const Acl::RuleConfig& rule, Acl::UniqueId aclId,
       const AclDataPtr& aclData, U32 ruleNum, U32 subruleNum, U16 srcL4Port, U16 srcL4PortMask,
       U16 dstL4Port, U16 dstL4PortMask, U16 srcPortLow, U16 srcPortHigh, U16 dstPortLow,
       U16 dstPortHigh, U16 ipLen, U16 ipLenMask, U16 ipLenLow, U16 ipLenHigh, U8 extraTcpFlags,
       bool l4Rule, U8 ecnData, U8 ecnMask );
   virtual Fennel::AclCreateError createIpFragRule( const AclDataPtr& aclData,
                                                    const Acl::RuleConfig& rule,
                                                    Acl::UniqueId aclId, U32 ruleNum,
                                                    U32 subRuleNum );
   virtual Fennel::AclCreateError createMacAclRule( const Acl::RuleConfig& rule,
                                                    Acl::UniqueId aclId, const AclDataPtr& aclData,
                                                    U32 ruleNum );
   virtual Fennel::AclCreateError createFinalAclRule( Acl::AclType aclType,
                                                      const AclDataPtr& aclData, U32 ruleNum );
   virtual bool needToInstallIcmp6NeighborDiscoveryRules();

   // Lifecycle of one ACL: precreate, rules, prepareToCommit, commit, destroy, clean up.
   virtual Fennel::AclCreateError precreateAcl( const AclDataPtr& aclData,
                                                const AclDataStatusPtr& aclDataStatus );
   virtual void destroyAcl( const AclDataPtr& aclData );
   // Takes the ACL's entries out of hardware, keeping them; the base: nothing.
   virtual void removeAcl( const AclDataPtr& aclData );
   virtual void cleanupAcl( const AclDataPtr& aclData );
   virtual void prepareToCommit();
   virtual void commitAcl( const AclDataPtr& aclData );
   // Commits what commitAcl() left for a batch; the base: nothing (commitAcl commits).
   virtual void batchCommitAcls();

   // Traffic blocking during updates; `vlan` is read for a sub-interface only.
   virtual void blockIntf( Pylon::IntfId intf, bool block, U32 vlan );

   // Sharing of router ACLs. The base shares nothing on routed ports and
   // sub-interfaces; the other questions are the back-end's.
   virtual bool sharedAclDataForVlansSupported( const Fennel::AclKey& aclKey );
   virtual bool routedPortAclSharingSupported( const Fennel::AclKey& aclKey );
   virtual bool subIntfAclSharingSupported( const Fennel::AclKey& aclKey );
   virtual bool useUnsharedRaclsForSubIntf();
   virtual bool isVfiForwarding();

   // Bindings. addIntfToAcl answers true when the ACL must be reapplied;
   // removeIntfFromAcl true when some ACL became dirty.
   virtual bool addIntfToAcl( const Fennel::IntfPairKey& intfPair, const AclDataPtr& aclData,
                              const AclDataStatusPtr& aclDataStatus );
   virtual bool removeIntfFromAcl( const Fennel::IntfPairKey& intfPair, const AclDataPtr& aclData,
                                   bool belongsToAnother );
   virtual void updateAclPorts( const AclDataPtr& aclData, bool active );

   // ACLs with extended actions (mirror destinations and the like). The base
   // refuses all of them: each answers false, "not served".
   virtual bool createAclsWithExtActions();
   virtual bool addAclWithExtActions( const AclDataPtr& aclData, const Acl::RuleConfig& rule,
                                      Acl::UniqueId aclId, U32 ruleNum );
   virtual bool createMirrorDestinationAcl( const AclDataPtr& aclData );
   virtual bool removeMirrorDestinationAcl( const AclDataPtr& aclData );
   virtual bool deleteAclRuleWithExtActions( const AclDataPtr& aclData, Acl::UniqueId aclId,
                                             U32 ruleNum );
   virtual bool commitAclWithExtActions( const AclDataPtr& aclData );
   virtual bool deleteAcl( const AclDataPtr& aclData );
   virtual bool deleteAclRule( const AclDataPtr& aclData, Acl::UniqueId aclId, U32 ruleNum );

   // An interface's port changed in the agent's port map.
   virtual void handleHalyardIntfToPort( Pylon::IntfId intf );

   // Whether a rule or subrule stands in the back-end.
   virtual bool macRuleExists( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 ruleNum );
   virtual bool ipSubruleExists( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 ruleNum,
                                 U32 subRule );
   virtual bool ipPortRangeSubruleExists( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                          U32 ruleNum, U32 subRule, U16 srcStart, U16 srcEnd,
                                          bool hasSrc, U16 dstStart, U16 dstEnd, bool hasDst );

   // Verification of one rule against the hardware, one attribute per call;
   // each finding goes to the verification sink. `check` says that the rule
   // has the term, so that its absence from the hardware is a finding too.
   virtual void verifyMacRuleGeneral( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                      U32 sequence, U32 ruleNum );
   virtual void verifyMacRuleAction( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                     U32 sequence, U32 ruleNum, Acl::Action action, bool log );
   virtual void verifyMacRuleSrcMac( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                     U32 sequence, U32 ruleNum, const Pylon::EthAddr& addr,
                                     const Pylon::EthAddr& mask, bool check );
   virtual void verifyMacRuleDstMac( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                     U32 sequence, U32 ruleNum, const Pylon::EthAddr& addr,
                                     const Pylon::EthAddr& mask, bool check );
   virtual void verifyMacRuleEtherType( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                        U32 sequence, U32 ruleNum, U16 etherType, bool check );
   virtual void verifyIpRuleGeneral( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                     U32 sequence, U32 ruleNum, U32 subRule );
   virtual void verifyIpRuleAction( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                    U32 sequence, U32 ruleNum, U32 subRule, Acl::Action action,
                                    bool log );
   virtual void verifyIpRuleIpProto( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                     U32 sequence, U32 ruleNum, U32 subRule, U8 proto, bool check );
   virtual void verifyIpRuleSrcIp( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                   U32 sequence, U32 ruleNum, U32 subRule, U32 addr, U32 mask,
                                   bool check );
   virtual void verifyIpRuleDstIp( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                   U32 sequence, U32 ruleNum, U32 subRule, U32 addr, U32 mask,
                                   bool check );
   virtual void verifyIpRuleSrcIp6( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                    U32 sequence, U32 ruleNum, U32 subRule,
                                    const Pylon::Ip6AddrWithMask& addr, bool check );
   virtual void verifyIpRuleSrcIp6FullMask( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                            U32 sequence, U32 ruleNum, U32 subRule,
                                            const Pylon::Ip6AddrWithFullMask& addr, bool check );
   virtual void verifyIpRuleDstIp6( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                    U32 sequence, U32 ruleNum, U32 subRule,
                                    const Pylon::Ip6AddrWithMask& addr, bool check );
   virtual void verifyIpRuleDstIp6FullMask( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                            U32 sequence, U32 ruleNum, U32 subRule,
                                            const Pylon::Ip6AddrWithFullMask& addr, bool check );
   virtual void verifyIpRuleDscp( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                                  U32 ruleNum, U32 subRule, U8 dscp, bool check );
   virtual void verifyIpRuleTcIp6( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                   U32 sequence, U32 ruleNum, U32 subRule, U8 trafficClass,
                                   bool check );
   // `notFirst`: the rule matches non-first fragments; `nonOrFirst`: it matches
   // first fragments and unfragmented packets.
   virtual void verifyIpRuleFragments( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                       U32 sequence, U32 ruleNum, U32 subRule, bool notFirst,
                                       bool nonOrFirst );
   virtual void verifyIpRuleTcpFlags( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                      U32 sequence, U32 ruleNum, U32 subRule, U8 tcpFlags,
                                      bool check );
   virtual void verifyIpRuleIcmp( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                                  U32 ruleNum, U32 subRule, U8 icmpType, U8 icmpCode,
                                  bool checkType, bool checkCode );
   virtual void verifyIpRuleSrcPort( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                     U32 sequence, U32 ruleNum, U32 subRule, U16 start, U16 end,
                                     bool check );
   virtual void verifyIpRuleDstPort( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                     U32 sequence, U32 ruleNum, U32 subRule, U16 start, U16 end,
                                     bool check );
   virtual void verifyIpRuleIpLen( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                   U32 sequence, U32 ruleNum, U32 subRule, U16 start, U16 end,
                                   bool check );
   virtual void verifyAclGeneral( const AclDataPtrConst& aclData );
   virtual void verifyDropAllRule( const AclDataPtrConst& aclData, U32 ruleNum );
   // Deep-inspection rules; the base has none, so nothing to report.
   virtual void verifyIpDIRule( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                                U32 ruleNum );
   virtual void verifyMacDIRule( const AclDataPtrConst& aclData, Acl::UniqueId aclId, U32 sequence,
                                 U32 ruleNum );

   // Operator tables, written to the file descriptor `fd`. `seq` dropRuleSeq
   // names the ACL's final drop rule.
   virtual void showAclTypeHeader( U32 fd, U32 unit, Acl::AclType aclType );
   virtual void showAclHeader( U32 fd, U32 unit, bool verbose, const AclDataPtrConst& aclData );
   virtual void showMacAclRule( U32 fd, U32 unit, const AclDataPtrConst& aclData, U32 seq,
                                Acl::UniqueId uniqueId );
   virtual void showIpAclRule( U32 fd, U32 unit, const AclDataPtrConst& aclData, U32 seq,
                               Acl::UniqueId uniqueId );
   virtual void showDropEntry( U32 fd, U32 unit, const AclDataPtrConst& aclData );
   virtual void showSharedRaclData( U32 fd, U32 unit );

   // Hit counters.
   virtual bool aclCountersAllocated( const AclDataPtrConst& aclData );
   // The rule's new hits over all units since the last poll.
   virtual U64 aclRuleCountersSinceLastPoll( const AclDataPtrConst& aclData, U32 sequence,
                                             Acl::UniqueId aclId );
   // The same on one unit; no value when the back-end keeps no per-chip
   // counters, which is the base's answer.
   virtual std::optional<U64> aclRuleCounterPerChipSinceLastPoll( const AclDataPtrConst& aclData,
                                                                  U32 sequence, Acl::UniqueId aclId,
                                                                  U32 unit );

   // Tap aggregation and deep inspection; the base has neither: the handlers
   // answer false ("not served") and the checks have nothing to report.
   virtual bool doConfigureTapAggMode( bool enabled );
   virtual bool handleDeepInspSkipL2( bool skip );
   virtual bool handleDeepInspSkipL4( bool skip );
   virtual void verifyDeepInspSkipL2();
   virtual void verifyDeepInspSkipL4();
   // Whether ACLs on sub-interfaces are applied as port ACLs; the base: false.
   virtual bool subIntfAclAsPacl() const;

   // The helper-wide dirty flag: some ACL waits for a reapply. Stores the
   // value and tells the notifiees when it changed; a back-end extends it
   // (its per-unit marks go when the flag goes false) and calls this first.
   virtual void dirtyIs( bool dirty );

   // --- State that the back-end reports (not virtual). ---

   bool dirty() const { return dirty_; }

   // ACLs that must be reapplied; the generic layer removes a key when it has.
   bool dirtyAcl( const Fennel::AclKey& aclKey ) const { return dirtyAcl_.has( aclKey ); }
   const DirtyAclSet& dirtyAcl() const { return dirtyAcl_; }
   void dirtyAclIs( const Fennel::AclKey& aclKey );
   void dirtyAclDel( const Fennel::AclKey& aclKey );
   void dirtyAclDelAll();

   // The last create error of each chip, by chip name; success when absent.
   Fennel::AclCreateError unitError( const Vesper::Name& chipName ) const;
   const UnitErrorMap& unitError() const { return unitError_; }
   void unitErrorIs( const Vesper::Name& chipName, Fennel::AclCreateError error );
   void unitErrorDel( const Vesper::Name& chipName );
   void unitErrorDelAll();

   // Whether a chip's error is to be shown to the operator; false when absent.
   bool publishUnitError( const Vesper::Name& chipName ) const;
   const PublishUnitErrorMap& publishUnitError() const { return publishUnitError_; }
   void publishUnitErrorIs( const Vesper::Name& chipName, bool publish );
   void publishUnitErrorDel( const Vesper::Name& chipName );

   // The back-end asks for an update pass over the dirty ACLs at the next
   // opportunity; the generic layer clears it when it has run one.
   bool needsDeferredUpdate() const { return needsDeferredUpdate_; }
   void needsDeferredUpdateIs( bool needed );

   // The generic layer drives this back-end through its asynchronous path.
   bool asyncAclConfig() const { return asyncAclConfig_; }
   void asyncAclConfigIs( bool async );

   // Interfaces that stand blocked for an ACL update; false when absent.
   bool aclIntfBlockedStatus( Pylon::IntfId intf ) const;
   const IntfBlockedMap& aclIntfBlockedStatus() const { return aclIntfBlockedStatus_; }
   bool aclIntfBlockedStatusHas( Pylon::IntfId intf ) const {
      return aclIntfBlockedStatus_.has( intf );
   }
   void aclIntfBlockedStatusIs( Pylon::IntfId intf, bool blocked );
   void aclIntfBlockedStatusDel( Pylon::IntfId intf );

   // Whether traffic passes while an ACL is rewritten, for the configured
   // setting: only where the back-end can permit at all (permitDuringAclUpdate);
   // then `permit` says yes, `deny` no, and `platformDefault` the back-end's
   // default (defaultActionDuringAclUpdatePermit).
   bool getPermitDuringAclUpdate( Acl::PermitDuringAclUpdateConfig cliConfig ) const;

   // --- Capability flags (AclHelperCapabilities.h lists them). ---

   bool capability( AclCapability capability ) const;
   void capabilityIs( AclCapability capability, bool value );
#define FENNEL_CAPABILITY_ACCESSORS( name, defaultValue ) \
   bool name() const {                                    \
      return capability( AclCapability::name );           \
   }                                                      \
   void name##Is( bool value ) {                          \
      capabilityIs( AclCapability::name, value );         \
   }
   FENNEL_ACL_CAPABILITIES( FENNEL_CAPABILITY_ACCESSORS )
#undef FENNEL_CAPABILITY_ACCESSORS

   // The TCP control bits rules may match; supportedTcpFlagsDefault() until set.
   U8 supportedTcpFlags() const;
   void supportedTcpFlagsIs( U8 flags );

   Fennel::Ip6DefaultIcmp6TypesSupported installImplicitIcmp6Rules() const {
      return installImplicitIcmp6Rules_;
   }
   void installImplicitIcmp6RulesIs( Fennel::Ip6DefaultIcmp6TypesSupported types );

   // --- Generic inputs the back-end reads, set when the generic machine is built. ---

   const Fennel::FennelCommonSmData::PtrConst& fcsd() const {
      return fcsd_;
   }
   void fcsdIs( Fennel::FennelCommonSmData::PtrConst fcsd ) {
      fcsd_ = std::move( fcsd );
   }
   const Acl::IntfConfig::PtrConst& intfConfig() const {
      return intfConfig_;
   }
   void intfConfigIs( Acl::IntfConfig::PtrConst config ) {
      intfConfig_ = std::move( config );
   }

 protected:
   // Made only as the base of a back-end, whose factory turns notifications on.
   AclHelper();

 private:
   bool dirty_ = false;
   DirtyAclSet dirtyAcl_;
   UnitErrorMap unitError_;
   PublishUnitErrorMap publishUnitError_;
   bool needsDeferredUpdate_ = false;
   bool asyncAclConfig_ = false;
   IntfBlockedMap aclIntfBlockedStatus_;
   std::bitset<aclCapabilityCount> capabilities_;
   std::optional<U8> supportedTcpFlags_;
   Fennel::Ip6DefaultIcmp6TypesSupported installImplicitIcmp6Rules_ =
       Fennel::Ip6DefaultIcmp6TypesSupported::none;
   Fennel::FennelCommonSmData::PtrConst fcsd_;
   Acl::IntfConfig::PtrConst intfConfig_;
};

}  // namespace FennelHelper
