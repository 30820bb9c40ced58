// The rule-level records of the ACL back-end: what one ACL holds on one unit.
//
//   AclCommonUnitData  one per ACL and unit: the ACL's rules on that chip, found by rule
//                      number (aclRule, walked in rising number) and by rule id (aclRuleData)
//   AclRuleData        one per rule: the entries of each subrule, the stage each entry came
//                      from, range checkers, payload fields, the last counter reading
//   AclEntryList       the entries of one subrule; a VFP or per-port rule is replicated, so
//                      a subrule can hold several
//   CommonRuleData     the result of acquiring entries for one rule on one unit: the entries
//                      to program alike, and whether the acquisition failed
//   AclTypeUnitData    the pool of free egress interface classes of one type-direction-feature
//                      state machine on one unit
//
// Ownership: AclUnitData owns its AclCommonUnitData, which owns its AclRuleData (both
// indices hold counted pointers), which own their AclEntryList. `parent` of a rule is a back
// pointer. Entries, range checkers and user-defined fields belong to the TCAM managers: these
// records only hold their ids from acquisition to release.
//
// Invariants:
//  1. An AclRuleData stands in both indices of its AclCommonUnitData or in neither. Rule code
//     goes in through aclRuleCreate(), which enters both; aclRuleIs() and aclRuleDel() touch
//     only the first, so callers that use them keep the second in step (teardown removes
//     from both).
//  2. aclId, ruleNum and dropAll of a rule never change; ruleNum is its key in aclRule.
//  3. An interface class pool never yields 0: 0 is no class, the answer of an empty pool.
//
// Programming operations of AclCommonUnitData written so far: the match fields of IP subrules
// (HalyardAclCommonSubrule.cpp, HalyardAclCommonIp4.cpp, HalyardAclCommonIp6.cpp), range
// checkers (HalyardAclCommonRangeCheckers.cpp), commit (HalyardAclCommonCommit.cpp), port
// masks and VLANs onto committed entries (HalyardAclCommonPortUpdate.cpp) and teardown
// (HalyardAclCommonTeardown.cpp). Verification and show are not written yet; the TCAM service
// variant's request records (requestConfig, requestSubConfig, subRuleToRuleId, tcamRequest)
// are missing too, because the platform has no request classes of the TCAM service to hold.
//
// Threads: activity thread, with the activity lock held.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "platform/acl/AclTypes.h"
#include "platform/acl/RuleConfig.h"
#include "platform/acl/UniqueId.h"
#include "platform/fennel/AclCreateError.h"
#include "platform/fennel/AclKey.h"
#include "platform/halyard/AclRuleUdfData.h"
#include "platform/halyard/RangeCheckerDesc.h"
#include "platform/pylon/IntfId.h"
#include "platform/shim/BcmTypes.h"
#include "platform/tcam/HalyardCommonSmData.h"
#include "platform/tcam/HalyardTcamGroupManager.h"
#include "platform/tcam/HalyardUnboundedTcamEntryManager.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/HashMapGeneric.h"
#include "platform/vesper/LinkStack.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/RbTreeMap.h"
#include "platform/vesper/Types.h"

namespace Halyard {

// The generation of the rule records of every ACL: it moves on at each change of which rules
// an ACL has on a unit, of a rule's entry lists or their entries, of a rule's fragment flag,
// and of which ACL records the helper holds. What is derived from those records (the counter
// poll's plan) holds while the generation stands. One activity thread: a plain count.
struct RuleRecords {
   static inline U64 generation = 0;
   static void changed() { ++generation; }
};

// A set in the runtime's map: members map to true. Its walks survive deletion, as the walks
// over entries and ports must, since reactors may run between two SDK calls of one walk.
template <class Key>
using KeySet = Vesper::HashMap2018<Key, bool>;

// A pool of free interface classes, last in first out: the class given back last is the
// next one out. Members are known by index as in a LinkStack (0 at the bottom).
class IntfClassPool {
 public:
   // Adds the class on top; returns its index.
   U32 push( U8 intfClass ) { return stack_.push( intfClass ); }
   // Takes the top class; 0 when the pool is empty (0 is never a class).
   U8 pop() { return stack_.pop().value_or( 0 ); }
   // Sets the class at `index`; an index one past the top adds a member there.
   // An index further up raises Vesper::RangeException "linkstack index out of range".
   void is( U32 index, U8 intfClass );
   // Removes the member at `index`; the members above it move down one index.
   // An index that names no member raises Vesper::RangeException.
   void del( U32 index );
   void delAll() { stack_.clear(); }

   const Vesper::LinkStack& stack() const { return stack_; }
   size_t size() const { return stack_.size(); }
   bool empty() const { return stack_.empty(); }

 private:
   Vesper::LinkStack stack_;
};

// The entries of one subrule.
class AclEntryList : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Halyard::AclEntryList" )

 public:
   using Ptr = Vesper::Ptr<AclEntryList>;

   explicit AclEntryList( U32 subRuleNum ) : subRuleNum_( subRuleNum ) {}

   U32 subRuleNum() const { return subRuleNum_; }

   const KeySet<U32>& entry() const { return entry_; }
   bool entryHas( U32 entry ) const { return entry_.has( entry ); }
   size_t entryCount() const { return entry_.size(); }
   void entryIs( U32 entry ) {
      RuleRecords::changed();
      entry_.set( entry, true );
   }
   // True when the entry was a member.
   bool entryDel( U32 entry ) {
      RuleRecords::changed();
      return entry_.del( entry ).has_value();
   }
   void entryDelAll() {
      RuleRecords::changed();
      entry_.clear();
   }

 private:
   const U32 subRuleNum_;
   KeySet<U32> entry_;
};

class AclCommonUnitData;

// One rule of an ACL on one unit.
class AclRuleData : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Halyard::AclRuleData" )

 public:
   using Ptr = Vesper::Ptr<AclRuleData>;
   using EntryListMap = Vesper::HashMapGeneric<AclEntryList, &AclEntryList::subRuleNum>;
   using EntryFlagMap = Vesper::HashMap2018<U32, bool>;
   using RangeCheckerMap = Vesper::HashMap2018<RangeCheckerDesc, U32>;

   AclRuleData( Acl::UniqueId aclId, U32 ruleNum, bool dropAll,
                Vesper::BackPtr<AclCommonUnitData> parent );

   Acl::UniqueId aclId() const { return aclId_; }
   U32 ruleNum() const { return ruleNum_; }
   bool dropAll() const { return dropAll_; }
   Vesper::BackPtr<AclCommonUnitData> parent() const { return parent_; }

   bool hasPermitFragmentRule() const { return hasPermitFragmentRule_; }
   void hasPermitFragmentRuleIs( bool has ) {
      RuleRecords::changed();
      hasPermitFragmentRule_ = has;
   }

   // The entries in service, by subrule. entryListIs() makes the list when absent.
   AclEntryList::Ptr entryList( U32 subRule ) const { return entryList_.find( subRule ); }
   const EntryListMap& entryList() const { return entryList_; }
   AclEntryList::Ptr entryListIs( U32 subRule ) {
      RuleRecords::changed();
      return listIs( entryList_, subRule );
   }
   AclEntryList::Ptr entryListDel( U32 subRule ) {
      RuleRecords::changed();
      return entryList_.del( subRule );
   }
   void entryListDelAll() {
      RuleRecords::changed();
      entryList_.clear();
   }

   // A list of the same shape, kept for the attribute table; nothing fills it today.
   AclEntryList::Ptr portUpdateEntryList( U32 subRule ) const {
      return portUpdateEntryList_.find( subRule );
   }
   const EntryListMap& portUpdateEntryList() const { return portUpdateEntryList_; }
   AclEntryList::Ptr portUpdateEntryListIs( U32 subRule ) {
      return listIs( portUpdateEntryList_, subRule );
   }
   AclEntryList::Ptr portUpdateEntryListDel( U32 subRule ) {
      return portUpdateEntryList_.del( subRule );
   }
   void portUpdateEntryListDelAll() { portUpdateEntryList_.clear(); }

   // Where each entry came from, which names the manager that must release it. An absent
   // entry reads false.
   bool entryFromVfp( U32 entry ) const { return flagOf( entryFromVfp_, entry ); }
   const EntryFlagMap& entryFromVfp() const { return entryFromVfp_; }
   void entryFromVfpIs( U32 entry, bool value ) { entryFromVfp_.set( entry, value ); }
   void entryFromVfpDel( U32 entry ) { entryFromVfp_.del( entry ); }
   void entryFromVfpDelAll() { entryFromVfp_.clear(); }

   bool entryFromStd( U32 entry ) const { return flagOf( entryFromStd_, entry ); }
   const EntryFlagMap& entryFromStd() const { return entryFromStd_; }
   void entryFromStdIs( U32 entry, bool value ) { entryFromStd_.set( entry, value ); }
   void entryFromStdDel( U32 entry ) { entryFromStd_.del( entry ); }
   void entryFromStdDelAll() { entryFromStd_.clear(); }

   bool entryFromVni( U32 entry ) const { return flagOf( entryFromVni_, entry ); }
   const EntryFlagMap& entryFromVni() const { return entryFromVni_; }
   void entryFromVniIs( U32 entry, bool value ) { entryFromVni_.set( entry, value ); }
   void entryFromVniDel( U32 entry ) { entryFromVni_.del( entry ); }
   void entryFromVniDelAll() { entryFromVni_.clear(); }

   // Range checkers in use and their ids; absent reads nothing.
   std::optional<U32> rangeChecker( const RangeCheckerDesc& desc ) const;
   const RangeCheckerMap& rangeChecker() const { return rangeChecker_; }
   bool rangeCheckerHas( const RangeCheckerDesc& desc ) const { return rangeChecker_.has( desc ); }
   void rangeCheckerIs( const RangeCheckerDesc& desc, U32 id ) { rangeChecker_.set( desc, id ); }
   std::optional<U32> rangeCheckerDel( const RangeCheckerDesc& desc ) {
      return rangeChecker_.del( desc );
   }
   void rangeCheckerDelAll() { rangeChecker_.clear(); }

   // The hit counter as last read, to give the hits since then.
   U64 lastReadValue() const { return lastReadValue_; }
   void lastReadValueIs( U64 value ) { lastReadValue_ = value; }

   const AclRuleUdfData& udfDataForRule() const { return udfDataForRule_; }
   AclRuleUdfData& udfDataForRule() { return udfDataForRule_; }

 private:
   static AclEntryList::Ptr listIs( EntryListMap& map, U32 subRule );
   static bool flagOf( const EntryFlagMap& map, U32 entry ) {
      const bool* flag = map.find( entry );
      return flag && *flag;
   }

   const Acl::UniqueId aclId_;
   const U32 ruleNum_;
   const bool dropAll_;
   bool hasPermitFragmentRule_ = false;
   EntryListMap entryList_;
   EntryListMap portUpdateEntryList_;
   EntryFlagMap entryFromVfp_;
   EntryFlagMap entryFromStd_;
   EntryFlagMap entryFromVni_;
   RangeCheckerMap rangeChecker_;
   U64 lastReadValue_ = 0;
   AclRuleUdfData udfDataForRule_;
   const Vesper::BackPtr<AclCommonUnitData> parent_;
};

// The counter poll's view of one ACL on one unit (HalyardAclSmCounters.cpp): its rules in
// rising rule number, each with its entries and their managers in one flat array, so that a
// poll reads memory in order instead of walking the records' maps for every rule. Made from
// the records, and trusted only while RuleRecords::generation stands where it was made.
struct CounterPollPlan {
   struct Rule {
      Acl::UniqueId aclId;
      AclRuleData* record = nullptr;  // owned by the unit's records; lastReadValue lives there
      U32 firstEntry = 0;             // the rule's entries: [firstEntry, endEntry) of entries
      U32 endEntry = 0;
   };
   struct Entry {
      U32 entry = 0;
      HalyardTcamEntryManager* manager = nullptr;  // tcamManagerForEntry, as it stood
   };
   U64 generation = ~U64( 0 );
   std::vector<Rule> rules;
   std::vector<std::pair<Acl::UniqueId, U32> > byId;  // rising id, to the index in rules
   std::vector<Entry> entries;
   U32 next = 0;  // the rule that a poll in rule order asks for next

   // The rule of `aclId`, or null when the unit has none.
   const Rule* find( Acl::UniqueId aclId );
};

// One ACL on one unit: its rules and how they may be programmed there.
class AclCommonUnitData : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Halyard::AclCommonUnitData" )

 public:
   using Ptr = Vesper::Ptr<AclCommonUnitData>;
   using AclRuleMap = Vesper::RbTreeMap<AclRuleData, &AclRuleData::ruleNum>;
   using AclRuleIdMap = Vesper::HashMap2018<Acl::UniqueId, AclRuleData::Ptr>;

   AclCommonUnitData( U32 unit, Acl::AclType type, HalyardCommonSmData::Ptr hcsd,
                      HalyardTcamGroupManager::Ptr tcamGroupManager );

   U32 unit() const { return unit_; }
   Acl::AclType type() const { return type_; }
   const HalyardCommonSmData::Ptr& hcsd() const { return hcsd_; }
   const HalyardTcamGroupManager::Ptr& tcamGroupManager() const { return tcamGroupManager_; }

   // The ACL has changes not yet committed on this unit.
   bool dirty() const { return dirty_; }
   void dirtyIs( bool dirty ) { dirty_ = dirty; }
   // Its entries stand in hardware.
   bool installed() const { return installed_; }
   void installedIs( bool installed ) { installed_ = installed; }
   // How the ACL's rules may be keyed here, settled before its rules are made.
   bool canUseVfp() const { return canUseVfp_; }
   void canUseVfpIs( bool value ) { canUseVfp_ = value; }
   bool canUseStd() const { return canUseStd_; }
   void canUseStdIs( bool value ) { canUseStd_ = value; }
   bool useIpv6High() const { return useIpv6High_; }
   void useIpv6HighIs( bool value ) { useIpv6High_ = value; }
   bool useVni() const { return useVni_; }
   void useVniIs( bool value ) { useVni_ = value; }

   // Sessions on sub-interfaces: their entries and interfaces.
   const KeySet<U32>& sessionSrcSubIntfEntries() const { return sessionSrcSubIntfEntries_; }
   bool sessionSrcSubIntfEntriesHas( U32 entry ) const {
      return sessionSrcSubIntfEntries_.has( entry );
   }
   void sessionSrcSubIntfEntriesIs( U32 entry ) { sessionSrcSubIntfEntries_.set( entry, true ); }
   void sessionSrcSubIntfEntriesDel( U32 entry ) { sessionSrcSubIntfEntries_.del( entry ); }
   void sessionSrcSubIntfEntriesDelAll() { sessionSrcSubIntfEntries_.clear(); }

   const KeySet<Pylon::IntfId>& sessionSrcSubIntfList() const { return sessionSrcSubIntfList_; }
   bool sessionSrcSubIntfListHas( Pylon::IntfId intf ) const {
      return sessionSrcSubIntfList_.has( intf );
   }
   void sessionSrcSubIntfListIs( Pylon::IntfId intf ) { sessionSrcSubIntfList_.set( intf, true ); }
   void sessionSrcSubIntfListDel( Pylon::IntfId intf ) { sessionSrcSubIntfList_.del( intf ); }
   void sessionSrcSubIntfListDelAll() { sessionSrcSubIntfList_.clear(); }

   const KeySet<Pylon::IntfId>& sessionSrcIntfList() const { return sessionSrcIntfList_; }
   bool sessionSrcIntfListHas( Pylon::IntfId intf ) const {
      return sessionSrcIntfList_.has( intf );
   }
   void sessionSrcIntfListIs( Pylon::IntfId intf ) { sessionSrcIntfList_.set( intf, true ); }
   void sessionSrcIntfListDel( Pylon::IntfId intf ) { sessionSrcIntfList_.del( intf ); }
   void sessionSrcIntfListDelAll() { sessionSrcIntfList_.clear(); }

   // ---- Rules by number (rising on every walk).
   AclRuleData::Ptr aclRule( U32 ruleNum ) const { return aclRule_.find( ruleNum ); }
   const AclRuleMap& aclRule() const { return aclRule_; }
   bool aclRuleHas( U32 ruleNum ) const { return aclRule_.has( ruleNum ); }
   // The standing rule of that number, or a new one with this object as parent. A standing
   // rule with another aclId or dropAll raises Vesper::NameInUseException naming "_aclId" or
   // "_dropAll". Leaves aclRuleData alone.
   AclRuleData::Ptr aclRuleIs( Acl::UniqueId aclId, U32 ruleNum, bool dropAll );
   // The way in for rule code: aclRuleIs( aclId, ruleNum, true ), entered in both indices.
   // `dropAll` is accepted and deliberately not looked at, so every rule made this way has
   // dropAll true.
   AclRuleData::Ptr aclRuleCreate( Acl::UniqueId aclId, U32 ruleNum, bool dropAll );
   // Removes from aclRule only; the removed rule, or null.
   AclRuleData::Ptr aclRuleDel( U32 ruleNum ) { return aclRule_.del( ruleNum ); }
   void aclRuleDelAll() { aclRule_.clear(); }

   // ---- Rules by id.
   AclRuleData::Ptr aclRuleData( Acl::UniqueId aclId ) const;
   const AclRuleIdMap& aclRuleData() const { return aclRuleData_; }
   bool aclRuleDataHas( Acl::UniqueId aclId ) const { return aclRuleData_.has( aclId ); }
   // A null rule removes the member; otherwise it is added or replaced.
   void aclRuleDataIs( Acl::UniqueId aclId, const AclRuleData::Ptr& rule );
   AclRuleData::Ptr aclRuleDataDel( Acl::UniqueId aclId );
   void aclRuleDataDelAll() {
      RuleRecords::changed();
      aclRuleData_.clear();
   }

   // aclRuleData( aclId ). With the common data's aclRuleIndexConsistencyCheck on, the
   // lookup is cross-checked against a walk of aclRule: a broken invariant 1 stops the
   // process ("aclRuleIter.ptr() == found" or "!found").
   AclRuleData::Ptr getAclRuleDataForAclId( Acl::UniqueId aclId ) const;

   // The counter poll's plan of these records; the poll remakes it when it is out of date.
   CounterPollPlan& counterPollPlan() const { return counterPollPlan_; }

   // ---- Commit (HalyardAclCommonCommit.cpp). Installs every entry of every rule through the
   // entry's manager, in ascending rule number: rule order is priority order, so a packet
   // that arrives meanwhile sees a prefix of the rule list. A dirty or installed ACL is left
   // alone, so that a dirty one is never half-installed and a second commit does nothing.
   // With `installEntry` false the bookkeeping alone is done (counters from zero, installed).
   // An entry without a manager stops the process ("entryMgr").
   void commitAcl( const Fennel::AclKey& key, bool installEntry );

   // ---- Port masks and VLANs onto the entries (HalyardAclCommonPortUpdate.cpp). The walk
   // over rules goes up from rule 0, or down from the last rule with `updateInReverseOrder`;
   // every rule number below the count must have a rule (the process stops otherwise). An
   // entry is rewritten only when it is a sub-interface session entry exactly when `subIntf`
   // says so. VFP entries select ports by class: they get no port bitmap.

   // Writes `pbm` under the mask `allPbm` as the InPorts key of every IFP entry, records it
   // with the entry's manager as permanent, and reinstalls the entry when `installEntry`.
   void updateAclPortOnAllRule( const bcm_pbmp_t& pbm, const bcm_pbmp_t& allPbm, bool installEntry,
                                bool updateInReverseOrder, bool subIntf );
   void updateAclPortOnRule( const AclRuleData::Ptr& rule, const bcm_pbmp_t& pbm,
                             const bcm_pbmp_t& allPbm, bool installEntry, bool subIntf );
   // The outer VLAN of every entry (a VLAN ACL's), reinstalled when `installEntry`. Only wide
   // IFP entries can match a VLAN: a VFP or standard entry stops the process.
   void updateVlanIdOnAllRule( U32 vlanId, bool installEntry, bool updateInReverseOrder );
   void updateVlanIdOnRule( const AclRuleData::Ptr& rule, U32 vlanId, bool installEntry );

   // ---- Teardown (HalyardAclCommonTeardown.cpp).

   // Gives back everything the ACL holds on this unit, from the last rule down: per rule its
   // range checkers (always through `entryManager`, whichever manager took them), then each
   // entry to the manager that issued it with the entry's payload fields, then the rule. Ends
   // with no rule, `dirty` true and `installed` false: the ACL reads as pending until the next
   // pass. A gap in the rule numbers stops the walk at once, with the rules above it gone and
   // the flags as they were. The managers other than `entryManager` may be null; they are the
   // seams of a variant that keeps entries elsewhere.
   // REQUIRES: every entry has a manager (the process stops on "entryManager" otherwise).
   virtual void destroyAcl( const Fennel::AclKey& key,
                            const HalyardUnboundedTcamEntryManager::Ptr& vfpEntryManager,
                            const HalyardUnboundedTcamEntryManager::Ptr& entryManager,
                            const HalyardUnboundedTcamEntryManager::Ptr& vniEntryManager,
                            const HalyardUnboundedTcamEntryManager::Ptr& stdVfpEntryManager,
                            const HalyardUnboundedTcamEntryManager::Ptr& stdEntryManager );
   // Takes every entry out of the chip's lookup (with `removeEntries`) and clears `installed`,
   // keeping the entries in the records so that a commit can install them again. `dirty` is
   // left alone. No caller in this library: the agent's generic attribute interface reaches it.
   // REQUIRES: every entry has a manager (the process stops on "entryMgr" otherwise).
   void removeAcl( const Fennel::AclKey& key, bool removeEntries );

   // ---- IP subrules. A subrule carries one source port term, one destination port term and
   // one IP length term, as the twelve U16 in this order: srcPort, srcPortMask, dstPort,
   // dstPortMask (a port under a mask), srcStart, srcEnd, dstStart, dstEnd (a range), ipLen,
   // ipLenMask, ipLenStart, ipLenEnd. The program operations are virtual: the TCAM service
   // variant fills requests where this class writes to the chip.

   // Before any entry of the subrule exists: makes the rule record when there is none, and
   // settles which stage the ACL may still use on this unit. A term that needs a range checker,
   // an IPv6 prefix above 64 bits (a VFP key holds the upper 64 only, unless standard entries
   // are in use), or, for IPv4, a payload match takes the ACL off VFP for good; an IPv4 VNI
   // match moves it to the VNI key.
   void ipSubruleInit( const Acl::RuleConfig& rule, const Fennel::AclKey& aclKey,
                       Acl::UniqueId aclId, U32 ruleNum, U32 subRule, U16 srcPort, U16 srcPortMask,
                       U16 dstPort, U16 dstPortMask, U16 srcStart, U16 srcEnd, U16 dstStart,
                       U16 dstEnd, U16 ipLen, U16 ipLenMask, U16 ipLenStart, U16 ipLenEnd );
   // Writes every match field of the subrule into `entry`: IP type and layer 3 fields, the
   // three range terms, fragments (IPv4), protocol, ICMP, TCP flags and VLAN, TTL or hop limit,
   // traffic class (IPv6). 0, or the code of the range checker that could not be had (3 for a
   // port, 2 for an IP length, 3 on egress); the entry then keeps the fields written so far.
   // REQUIRES: aclRule( ruleNum ) exists; `entryManager` issued the entry.
   virtual Fennel::AclCreateError ipSubruleProgram(
       U64 entry, const Acl::IpRuleConfig& rule, const Fennel::AclKey& aclKey, Acl::UniqueId aclId,
       U32 ruleNum, U32 subRule, U16 srcPort, U16 srcPortMask, U16 dstPort, U16 dstPortMask,
       U16 srcStart, U16 srcEnd, U16 dstStart, U16 dstEnd, U16 ipLen, U16 ipLenMask, U16 ipLenStart,
       U16 ipLenEnd, U8 tcpFlags, bool l4Conditions, bool matchVlan,
       const HalyardUnboundedTcamEntryManager::Ptr& entryManager, U8 ecn, U8 ecnMask,
       bool ignoreVni );
   virtual Fennel::AclCreateError ip6SubruleProgram(
       U64 entry, const Acl::Ip6RuleConfig& rule, const Fennel::AclKey& aclKey, Acl::UniqueId aclId,
       U32 ruleNum, U32 subRule, U16 srcPort, U16 srcPortMask, U16 dstPort, U16 dstPortMask,
       U16 srcStart, U16 srcEnd, U16 dstStart, U16 dstEnd, U16 ipLen, U16 ipLenMask, U16 ipLenStart,
       U16 ipLenEnd, U8 tcpFlags, bool l4Conditions, bool matchVlan,
       const HalyardUnboundedTcamEntryManager::Ptr& entryManager, U8 ecn, U8 ecnMask,
       bool ignoreVni );
   // Protocol with ICMP type and code (which the chip keys in the source port field), TCP
   // flags (`tcpFlags` as data and mask; 0 matches any), and the VLAN when `matchVlan`.
   virtual void ipSubruleProgramCommon( Acl::AclType type, U64 entry,
                                        const Acl::IpFilterBase& filter, U8 tcpFlags,
                                        bool matchVlan );
   // The IPv4 layer 3 fields: protocol (an extension header match for 141 where the chip
   // says so), addresses, TOS (DSCP and ECN in one byte) and VNI. An entry that already
   // carries a destination (the link-local multicast entry of a router ACL) keeps it.
   virtual void ipSubruleProgramL3Info( U64 entry, const Fennel::AclKey& aclKey,
                                        const Acl::IpRuleConfig& rule, U8 ecn, U8 ecnMask,
                                        bool ignoreVni );
   // The IPv6 layer 3 fields: IP type, protocol, addresses (upper 64 bits only on VFP
   // entries and in the narrow key) and VNI.
   virtual void ip6SubruleProgramL3Info( U64 entry, const AclRuleData::Ptr& ruleData,
                                         const Acl::Ip6RuleConfig& rule, bool ignoreVni );
   // Matches the entry on the outer VLAN; a VLAN ACL's entries follow its VLAN this way.
   virtual void addOuterVlanIdQualifier( U32 unit, U64 entry, U32 vlanId, U32 vlanMask );

   // ---- Range checkers (HalyardAclCommonRangeCheckers.cpp). Equal ranges of the subrules of
   // one rule share one checker (rangeChecker of the rule); another rule asks the manager
   // again. A checker that cannot be had, or cannot be attached (given back then), sets
   // `dirty`; an egress ACL has none.

   // A port term: the plain qualifier when port and mask say it, else a checker. 0, or 3.
   virtual Fennel::AclCreateError createPortRangeChecker(
       const Fennel::AclKey& aclKey, U64 entry, bool isSrc, Acl::UniqueId aclId, U32 ruleNum,
       U16 port, U16 portMask, U16 start, U16 end,
       const HalyardUnboundedTcamEntryManager::Ptr& entryManager );
   // An IP length term (an exact length comes in `start`): a checker or nothing. 0, 2 when no
   // checker can be had, 3 on egress.
   virtual Fennel::AclCreateError createIpLenRangeChecker(
       const Fennel::AclKey& aclKey, U64 entry, Acl::UniqueId aclId, U32 ruleNum, U16 ipLen,
       U16 ipLenMask, U16 start, U16 end,
       const HalyardUnboundedTcamEntryManager::Ptr& entryManager );
   // Whether the entry carries the port ranges asked for, through checkers or through plain
   // port qualifiers (a masked port read as a range). No term asked: true. Egress: false.
   bool ipPortRangeSubruleExists( U64 entry, const Fennel::AclKey& aclKey, Acl::UniqueId aclId,
                                  U32 ruleNum, U32 subRule, U16 srcStart, U16 srcEnd, bool hasSrc,
                                  U16 dstStart, U16 dstEnd, bool hasDst );

 private:
   // The three range terms of a subrule, source port, destination port and IP length in this
   // order; the code of the first that fails, after a trace naming it.
   Fennel::AclCreateError programRangeTerms(
       const Fennel::AclKey& aclKey, U64 entry, Acl::UniqueId aclId, U32 ruleNum, U16 srcPort,
       U16 srcPortMask, U16 dstPort, U16 dstPortMask, U16 srcStart, U16 srcEnd, U16 dstStart,
       U16 dstEnd, U16 ipLen, U16 ipLenMask, U16 ipLenStart, U16 ipLenEnd,
       const HalyardUnboundedTcamEntryManager::Ptr& entryManager );
   // The IPv4 TOS byte (DSCP and ECN), when the rule or the subrule asks for either.
   void programTos( U64 entry, const Acl::IpFilter& filter, U8 ecn, U8 ecnMask );
   // The VXLAN network identifier, when the rule matches on it and `ignoreVni` is false.
   void programVni( U64 entry, const Acl::IpFilterBase& filter, bool ignoreVni );
   // The IPv6 source or destination address, with the qualifier that the entry's key takes.
   void programIp6Address( U64 entry, const AclRuleData::Ptr& ruleData,
                           const Acl::Ip6Filter& filter, bool source );

   const U32 unit_;
   const Acl::AclType type_;
   const HalyardCommonSmData::Ptr hcsd_;
   const HalyardTcamGroupManager::Ptr tcamGroupManager_;
   bool dirty_ = false;
   bool installed_ = false;
   bool canUseVfp_ = true;
   bool canUseStd_ = false;
   bool useIpv6High_ = false;
   bool useVni_ = false;
   KeySet<U32> sessionSrcSubIntfEntries_;
   KeySet<Pylon::IntfId> sessionSrcSubIntfList_;
   KeySet<Pylon::IntfId> sessionSrcIntfList_;
   AclRuleMap aclRule_;
   AclRuleIdMap aclRuleData_;
   mutable CounterPollPlan counterPollPlan_;
};

// The bounds and the kind of the range checker `id` of the unit, as the SDK reads them back:
// `*flags` 1 for source ports, 2 for destination ports, 0x100 for IP lengths. Where the chip
// reads checkers by range configuration an unknown kind leaves `*flags` alone. The SDK's return
// code is not looked at: an unknown id leaves what the SDK leaves.
void getRangeCheckData( U32 unit, const HalyardCommonSmData::Ptr& hcsd, U32 id, int* low, int* high,
                        U32* flags );

// A new record with notifications on.
AclCommonUnitData::Ptr aclCommonUnitDataFactory( U32 unit, Acl::AclType type,
                                                 HalyardCommonSmData::Ptr hcsd,
                                                 HalyardTcamGroupManager::Ptr tcamGroupManager );

// The entries that one acquisition made for a rule on a unit, all to be programmed alike.
//   needed    the rule needs hardware (false when its action needs no entry). True with no
//             entry means that the acquisition failed for want of TCAM.
//   vfpEntry  the entries lie in the VFP stage
//   udfError  the payload fields could not be programmed, or the rule could not be served
class CommonRuleData : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Halyard::CommonRuleData" )

 public:
   using Ptr = Vesper::Ptr<CommonRuleData>;

   CommonRuleData() = default;

   const KeySet<U32>& entry() const { return entry_; }
   bool entryHas( U32 entry ) const { return entry_.has( entry ); }
   size_t entryCount() const { return entry_.size(); }
   void entryIs( U32 entry ) { entry_.set( entry, true ); }
   bool entryDel( U32 entry ) { return entry_.del( entry ).has_value(); }
   void entryDelAll() { entry_.clear(); }

   bool vfpEntry() const { return vfpEntry_; }
   void vfpEntryIs( bool value ) { vfpEntry_ = value; }
   bool needed() const { return needed_; }
   void neededIs( bool value ) { needed_ = value; }
   bool udfError() const { return udfError_; }
   void udfErrorIs( bool value ) { udfError_ = value; }

 private:
   KeySet<U32> entry_;
   bool vfpEntry_ = false;
   bool needed_ = false;
   bool udfError_ = false;
};

// A new record, empty and with the three flags false, with notifications on.
CommonRuleData::Ptr commonRuleDataFactory();

// The free egress interface classes of one type-direction-feature state machine on one unit.
class AclTypeUnitData : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Halyard::AclTypeUnitData" )

 public:
   using Ptr = Vesper::Ptr<AclTypeUnitData>;

   explicit AclTypeUnitData( U32 unit ) : unit_( unit ) {}

   U32 unit() const { return unit_; }

   const IntfClassPool& freeIntfClass() const { return freeIntfClass_; }
   U32 freeIntfClassPush( U8 intfClass ) { return freeIntfClass_.push( intfClass ); }
   // The next free class; 0 when none is left.
   U8 freeIntfClassPop() { return freeIntfClass_.pop(); }
   void freeIntfClassIs( U32 index, U8 intfClass ) { freeIntfClass_.is( index, intfClass ); }
   void freeIntfClassDel( U32 index ) { freeIntfClass_.del( index ); }
   void freeIntfClassDelAll() { freeIntfClass_.delAll(); }

 private:
   const U32 unit_;
   IntfClassPool freeIntfClass_;
};

}  // namespace Halyard
