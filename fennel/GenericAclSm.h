// Fennel::GenericAclSm: the generic ACL layer's machine. It reads the configuration
// (Acl::Config, Acl::IntfConfig, Acl::ParamConfig) and drives the back-end
// (FennelHelper::AclHelper) so that the hardware does what the configuration says.
//
// It is the driving subclass of Fennel::AclSm: registerGenericAclSm() puts its factory behind
// AclSm::create(), so that the back-end's AclSmEntity::aclSmIs builds one. from() finds it again.
//
// The machine works in explicit passes, as the simulated agents are stepped: the owner changes
// the configuration, then calls runPass() (or settle()). A pass is deterministic: ACLs are
// handled in the order of their keys. One pass:
//   1. ACL instances. Each binding "TYPE access-group NAME DIR" on an interface whose list NAME
//      is configured makes the instance AclKey(NAME, TYPE, DIR, standard, VLAN): VLAN 0 on a
//      front-panel port or port-channel, the VLAN on a VLAN interface (a router ACL). Bindings on
//      sub-interfaces are not served yet, and are listed in bindingErrors().
//   2. Teardown of instances no binding uses any more: removeIntfFromAcl for their bindings,
//      then destroyAcl (if rules were ever created) and cleanupAcl.
//   3. Bindings that went: removeIntfFromAcl (belongsToAnother when the interface passes straight
//      to another list of the same type and direction), then updateAclPorts(active false) for an
//      ACL that is not reapplied. Bindings that came: addIntfToAcl.
//   4. Applying, in the order the back-end depends on, each ACL that is new, whose list changed,
//      that a binding made dirty (an answer true, or the back-end's dirtyAcl), or that the last
//      pass left pending: destroyAcl first where the ACL stands in hardware (it was committed)
//      or its rules changed since they were created; precreateAcl; the rules in rising sequence
//      number with rule numbers dense from 0; the neighbour discovery permits of an IPv6 ACL
//      when the back-end asks for them; createFinalAclRule.
//      Then prepareToCommit once, commitAcl per ACL, updateAclPorts(active true).
//      With permitDuringAclUpdate "deny" an ACL that stands in hardware has its interfaces
//      blocked (blockIntf) from before destroyAcl until it is committed and its ports updated.
//   5. A list the back-end cannot serve, by its kind or a rule's term (RuleChecks.h), is
//      refused: nothing of it is changed in hardware, and its state says why (error 13).
// Between passes pollCounters() reads the rules' hit counters.
// Results of rule creation: 3 for a subrule with a port range term ("no range checker") makes
// the rule's port ranges aligned masked blocks (PortBlocks.h) on the ACL's next pass, and the
// ACL is not committed in this one, so that no unit serves it with the rule missing. Egress
// ACLs program port ranges as blocks from the start, having no checkers. 2 and 12 leave the
// ACL committed where the back-end could (a dirty unit is not installed) and pending: every
// later pass reapplies it until it goes in.
//
// Invariants:
//  1. Rule numbers given to the back-end are dense from 0 per ACL and per pass; AclState::rules
//     maps each back to its origin (a configured sequence number, a neighbour discovery permit, or
//     the closing rule, which is always last).
//  2. A list that did not change, with bindings that did not change, is not touched.
//  3. The back-end's hwInit runs once, from start() (which the first pass calls).
//
// Threads: the activity thread, with the activity lock held, as for the back-end.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/acl/AclConfig.h"
#include "platform/fennel/AclCreateError.h"
#include "platform/fennel/AclData.h"
#include "platform/fennel/AclDataStatus.h"
#include "platform/fennel/AclKey.h"
#include "platform/fennel/AclSm.h"
#include "platform/fennel/IntfPairKey.h"
#include "platform/pylon/IntfId.h"

namespace Fennel {

// Where a rule number of an ACL comes from.
struct RuleOrigin {
   enum class Kind : U8 { configured, neighborDiscovery, closing };
   Kind kind = Kind::configured;
   U32 seq = 0;  // the configured sequence number, for Kind::configured

   friend bool operator==( const RuleOrigin&, const RuleOrigin& ) = default;
};

// A rule whose port ranges went in as aligned masked blocks, and what that cost: subrules are
// entries per unit (per port on an egress ACL without a class), the fragment rule aside.
struct ExpandedRule {
   U32 seq = 0;
   U32 subrules = 0;       // as blocks
   U32 rangeSubrules = 0;  // with range terms, as the rule would have needed checkers

   friend bool operator==( const ExpandedRule&, const ExpandedRule& ) = default;
};

// Why a later pass must apply an ACL again.
enum class PendingReason : U8 {
   none,
   expand,     // a port range found no checker: the next pass programs it as blocks
   resources,  // the back-end ran out (entries, UDF): retried on every pass
};

// What the generic layer knows of one ACL instance. Per-unit state of the back-end is read
// through HalyardView.h.
struct AclState {
   AclKey key;
   std::set<Pylon::IntfId> intfs;            // bindings handed to the back-end
   std::vector<RuleOrigin> rules;            // by rule number, from the last application
   std::map<U32, ExpandedRule> expanded;     // by sequence number
   AclCreateError error = aclCreateSuccess;  // of the last application; 13 when refused
   std::string errorText;                    // for the operator; empty on success
   bool committed = false;                   // commitAcl ran after the last application
   PendingReason pending = PendingReason::none;
   U32 applications = 0;  // passes that created its rules
   AclData::Ptr aclData;  // the record handed to the back-end
   AclDataStatus::Ptr status;
   // Hits of each configured rule (by sequence number) since the ACL last went in, as far as
   // pollCounters() has read them. The entry that passes later fragments counts nothing.
   std::map<U32, U64> hits;

   // The configured sequence number of a rule number; nullopt for the neighbour discovery
   // permits, the closing rule and numbers out of range.
   std::optional<U32> seqOf( U32 ruleNum ) const;
   std::optional<U32> ruleNumOf( U32 seq ) const;
};

// How bindings reach the back-end. The machine's own hands them to addIntfToAcl,
// removeIntfFromAcl and updateAclPorts; an owner whose back-end binds ports another way (a
// back-end that does not serve these operations yet) gives the machine its own.
class AclBindingOps {
 public:
   virtual ~AclBindingOps() = default;
   // Answers whether the ACL must be reapplied.
   virtual bool add( const IntfPairKey& intf, const AclData::Ptr& aclData,
                     const AclDataStatus::Ptr& status ) = 0;
   // Answers whether some ACL went dirty (the back-end names it in dirtyAcl).
   virtual bool remove( const IntfPairKey& intf, const AclData::Ptr& aclData,
                        bool belongsToAnother ) = 0;
   virtual void updatePorts( const AclData::Ptr& aclData, bool active ) = 0;
};

struct PassSummary {
   std::vector<AclKey> applied;    // rules created in this pass
   std::vector<AclKey> committed;  // commitAcl called
   std::vector<AclKey> tornDown;   // destroyed and cleaned up
   std::vector<AclKey> refused;    // a rule cannot be programmed
   U32 bindingsAdded = 0;
   U32 bindingsRemoved = 0;
};

class GenericAclSm : public AclSm {
   VESPER_FWK_TYPE( "Fennel::GenericAclSm" )

 public:
   using Ptr = Vesper::Ptr<GenericAclSm>;

   // The ICMPv6 types of the neighbour discovery permits: router solicitation and
   // advertisement, neighbour solicitation and advertisement.
   static constexpr U8 neighborDiscoveryTypes[] = { 133, 134, 135, 136 };

   // The machine behind a pointer that AclSm::create() made, or null for a plain AclSm.
   static Ptr from( const AclSm::Ptr& machine );

   // The back-end's one-time bring-up (hwInit); the first pass calls it.
   void start();
   // For an owner that brought the back-end up itself: the machine will not call hwInit.
   void markStarted() { started_ = true; }
   bool started() const { return started_; }

   // Replaces how bindings reach the back-end (AclBindingOps); null restores the back-end's
   // own operations.
   void bindingOpsIs( std::shared_ptr<AclBindingOps> ops );

   // One pass (head of this file).
   PassSummary runPass();
   // Passes until nothing is left that another pass can do at once (a change not applied, a
   // range waiting for expansion), at most `maxPasses`; answers how many ran. ACLs pending for
   // resources are tried once.
   U32 settle( U32 maxPasses = 4 );
   // Whether a pass has work: a change of configuration or bindings, a pending ACL, or the
   // back-end asking for a deferred update.
   bool passWanted() const;

   // Reads the new hits of every configured rule of every ACL that stands whole in hardware
   // (committed, nothing pending) into AclState::hits. Others are not read: the back-end counts
   // only ACLs installed on every unit.
   void pollCounters();

   const std::map<AclKey, AclState>& acls() const { return state_; }
   const AclState* acl( const AclKey& key ) const;
   // Bindings the layer does not serve, one line each, from the last pass.
   const std::vector<std::string>& bindingErrors() const { return bindingErrors_; }

 private:
   friend void registerGenericAclSm();
   explicit GenericAclSm( const AclSmInputs& inputs );

   struct Desired {
      Acl::AclConfig::PtrConst config;
      std::set<Pylon::IntfId> intfs;
   };
   struct Memory {
      Acl::AclConfig::RuleMap appliedRules;                 // as last applied
      std::optional<Acl::AclConfig::RuleMap> refusedRules;  // as last refused
      std::set<U32> blockSeqs;           // rules whose port ranges go in as blocks
      std::map<U32, Acl::UniqueId> ids;  // for configured rules without an id
      std::vector<Acl::UniqueId> ndIds;  // of the neighbour discovery permits
   };
   struct PassWork;

   // The ACL instances the configuration asks for; bindings not served go to `errors`.
   std::map<AclKey, Desired> desiredAcls( std::vector<std::string>* errors ) const;
   // The list is new or its rules changed since they were last applied (or refused).
   bool configChanged( const AclKey& key, const Desired& want ) const;
   // configChanged, or a pass left the ACL pending.
   bool needsApply( const AclKey& key, const Desired& want ) const;
   bool changesWaiting() const;
   bool anyPending() const;

   void tearDown( const AclKey& key, const std::map<AclKey, Desired>& desired, PassWork& work );
   void removeBindings( const AclKey& key, const Desired& want,
                        const std::map<AclKey, Desired>& desired, PassWork& work );
   void addBindings( const AclKey& key, const Desired& want, PassWork& work );

   void apply( const AclKey& key, const Desired& want, PassWork& work );
   std::optional<std::string> refusal( const AclKey& key, const Acl::AclConfig& config ) const;
   void createRules( AclState& acl, Memory& memory, const Acl::AclConfig& config );
   AclCreateError createIpRule( AclState& acl, Memory& memory, U32 seq, const Acl::RuleConfig& rule,
                                U32 ruleNum, bool& created );
   void createNeighborDiscoveryRules( AclState& acl, Memory& memory, U32& ruleNum );
   void noteResult( AclState& acl, AclCreateError result, const std::string& where );

   void commitAndUpdatePorts( PassWork& work );
   void block( const AclState& acl, bool on );

   AclBindingOps& bindingOps() const;

   bool started_ = false;
   std::shared_ptr<AclBindingOps> bindingOps_;
   U32 version_ = 0;  // the configuration generation handed to AclData::aclVersion
   std::map<AclKey, AclState> state_;
   std::map<AclKey, Memory> memory_;
   // The counter poll's view of an ACL's configured rules, in rule order: the id each went in
   // with and where its hits go (a member of AclState::hits, whose node stands until the ACL
   // is applied again). Made at the first poll of each application of the ACL, so that a poll
   // looks nothing up per rule.
   struct CounterPlan {
      struct Rule {
         U32 seq = 0;
         Acl::UniqueId id;
         U64* hits = nullptr;
      };
      AclData::PtrConst aclData;  // the ACL's record when the plan was made
      U32 aclVersion = AclData::aclVersionNone;
      std::vector<Rule> rules;
   };
   // The plan of `acl`, remade when the ACL went in again since.
   const CounterPlan& counterPlan( AclState& acl );
   std::map<AclKey, CounterPlan> counterPlans_;
   std::set<AclKey> blocked_;  // ACLs whose interfaces stand blocked until they are committed
   std::vector<std::string> bindingErrors_;
};

// Registers GenericAclSm as the machine that AclSm::create() builds.
void registerGenericAclSm();

}  // namespace Fennel
