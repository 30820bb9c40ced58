// The generic machine's passes, seen from the back-end: which operations it calls, in which
// order, with which rule numbers and subrule terms, and what it keeps between passes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fennel/GenericAclSm.h"
#include "platform/vesper/ActivityLock.h"
#include "tests/fennel/common/Rules.h"
#include "tests/fennel/machine/RecordingBackEnd.h"

namespace {

using Acl::AclDirection;
using Acl::AclType;
using Fennel::AclKey;
using Fennel::PendingReason;
using Fennel::RuleOrigin;
using Pylon::IntfId;
using namespace FennelTest;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const IntfId eth1 = IntfId::ethernet( 1 );
const IntfId eth2 = IntfId::ethernet( 2 );
const IntfId eth3 = IntfId::ethernet( 3 );

class GenericAclSmTest : public ::testing::Test {
 protected:
   GenericAclSmTest() {
      Fennel::registerGenericAclSm();
      Fennel::AclSmInputs inputs;
      inputs.mainConfig = config_;
      inputs.aclParamConfig = params_;
      inputs.intfConfigCli = intfConfig_;
      inputs.aclHelper = backEnd_;
      machine_ = Fennel::GenericAclSm::from( Fennel::AclSm::create( inputs ) );
   }
   ~GenericAclSmTest() override { Fennel::aclSmFactoryIs( {} ); }

   void bind( AclType type, const std::string& name, IntfId intf,
              AclDirection dir = AclDirection::in ) {
      intfConfig_->intfAclIs( type, dir, intf, Vesper::Name( name ) );
   }
   // A pass, and the calls it made.
   std::vector<std::string> pass() {
      backEnd_->take();
      backEnd_->subrules.clear();
      machine_->runPass();
      return backEnd_->take();
   }
   const Fennel::AclState& state( const std::string& name, AclType type,
                                  AclDirection dir = AclDirection::in ) const {
      const auto* s = machine_->acl( AclKey( name, type, dir ) );
      EXPECT_NE( nullptr, s );
      return *s;
   }

   Vesper::ActivityLockGuard activity_;
   Acl::Config::Ptr config_ = Acl::configFactory();
   Acl::IntfConfig::Ptr intfConfig_ = Acl::intfConfigFactory();
   Acl::ParamConfig::Ptr params_ = Acl::paramConfigFactory();
   Vesper::Ptr<RecordingBackEnd> backEnd_ = RecordingBackEnd::create();
   Fennel::GenericAclSm::Ptr machine_;
};

TEST_F( GenericAclSmTest, OnePassInTheOrderTheBackEndDependsOn ) {
   ASSERT_TRUE( machine_ );
   listIs( config_, AclType::mac, "m",
           { remark( AclType::mac, 5, "no rule number for a remark" ), macRule( 10, permit ),
             macRule( 20, deny ), macRule( 30, permit ) } );
   bind( AclType::mac, "m", eth1 );
   bind( AclType::mac, "m", eth2 );
   EXPECT_TRUE( machine_->passWanted() );
   EXPECT_THAT(
       pass(),
       ElementsAre( "hwInit", "addIntfToAcl m Ethernet1", "addIntfToAcl m Ethernet2",
                    "precreateAcl m", "createMacAclRule m 0 seq 10", "createMacAclRule m 1 seq 20",
                    "createMacAclRule m 2 seq 30", "createFinalAclRule m 3", "prepareToCommit",
                    "commitAcl m", "updateAclPorts m active" ) );
   const auto& m = state( "m", AclType::mac );
   EXPECT_THAT( m.rules, ElementsAre( RuleOrigin{ RuleOrigin::Kind::configured, 10 },
                                      RuleOrigin{ RuleOrigin::Kind::configured, 20 },
                                      RuleOrigin{ RuleOrigin::Kind::configured, 30 },
                                      RuleOrigin{ RuleOrigin::Kind::closing, 0 } ) );
   EXPECT_EQ( 20u, m.seqOf( 1 ) );
   EXPECT_EQ( std::nullopt, m.seqOf( 3 ) );
   EXPECT_EQ( 2u, m.ruleNumOf( 30 ) );
   EXPECT_TRUE( m.committed );
   EXPECT_TRUE( m.aclData->installed() );
   EXPECT_EQ( 2u, m.aclData->activeIntfCount() );

   // Nothing changed: the next pass touches nothing, and bring-up is not repeated.
   EXPECT_FALSE( machine_->passWanted() );
   EXPECT_THAT( pass(), IsEmpty() );
}

TEST_F( GenericAclSmTest, IpRulesBecomeSubrulesWithTheirFragmentRule ) {
   listIs( config_, AclType::ip, "a",
           { ip4( 10, permit ).proto( tcp ).dport( eq( { 443, 80 } ) ),
             ip4( 20, deny ).proto( udp ).sport( lt( 1024 ) ).dport( range( 10, 20 ) ),
             ip4( 30, permit ).proto( tcp ).dport( gt( 65535 ) ), ip4( 40, permit ) } );
   bind( AclType::ip, "a", eth1 );
   EXPECT_THAT(
       pass(), ElementsAre( "hwInit", "addIntfToAcl a Ethernet1", "precreateAcl a",
                            "createIpAclSubrule a 0.0", "createIpAclSubrule a 0.1",
                            "createIpFragRule a 0.2", "createIpAclSubrule a 1.0",
                            "createIpAclSubrule a 2.0", "createFinalAclRule a 3", "prepareToCommit",
                            "commitAcl a", "updateAclPorts a active" ) );
   const auto& calls = backEnd_->subrules;
   ASSERT_EQ( 4u, calls.size() );
   EXPECT_EQ( 80, calls[0].dstPort );
   EXPECT_EQ( 0xFFFF, calls[0].dstPortMask );
   EXPECT_EQ( 80, calls[0].dstLow );
   EXPECT_EQ( 443, calls[1].dstPort );
   EXPECT_TRUE( calls[0].l4Rule );
   // lt 1024 is one block (value and mask); 10-20 a range for a checker.
   EXPECT_EQ( 0xFC00, calls[2].srcPortMask );
   EXPECT_EQ( 1023, calls[2].srcHigh );
   EXPECT_TRUE( calls[2].dstRange() );
   EXPECT_FALSE( calls[3].l4Rule );
   // The rule that no packet can meet took no rule number.
   EXPECT_EQ( std::nullopt, state( "a", AclType::ip ).ruleNumOf( 30 ) );
   EXPECT_EQ( 2u, state( "a", AclType::ip ).ruleNumOf( 40 ) );
   // Rules configured without an id get one, the same for every subrule and on every pass.
   EXPECT_FALSE( calls[0].rule.uniqueId().isEmpty() );
   EXPECT_EQ( calls[0].rule.uniqueId(), calls[1].rule.uniqueId() );
   EXPECT_NE( calls[0].rule.uniqueId(), calls[2].rule.uniqueId() );
}

TEST_F( GenericAclSmTest, RangeWithoutCheckerGoesInAsBlocksOnTheNextPass ) {
   backEnd_->subruleResult = []( const SubruleCall& c ) {
      return c.srcRange() || c.dstRange() ? Fennel::aclCreateNoRangeChecker
                                          : Fennel::aclCreateSuccess;
   };
   listIs( config_, AclType::ip, "r",
           { ip4( 10, permit ).proto( tcp ).dport( range( 10, 20 ) ), ip4( 20, deny ) } );
   bind( AclType::ip, "r", eth1 );
   // Not committed: no unit may serve the list with rule 10 missing.
   EXPECT_THAT( pass(), ElementsAre( "hwInit", "addIntfToAcl r Ethernet1", "precreateAcl r",
                                     "createIpAclSubrule r 0.0", "createIpFragRule r 0.1",
                                     "createIpAclSubrule r 1.0", "createFinalAclRule r 2",
                                     "prepareToCommit" ) );
   {
      const auto& r = state( "r", AclType::ip );
      EXPECT_EQ( PendingReason::expand, r.pending );
      EXPECT_EQ( Fennel::aclCreateNoRangeChecker, r.error );
      EXPECT_THAT( r.errorText, HasSubstr( "sequence 10" ) );
      EXPECT_FALSE( r.committed );
      EXPECT_TRUE( machine_->passWanted() );
   }
   // The next pass: 10-20 as 10-11, 12-15, 16-19, 20; nothing to destroy, as nothing went in.
   EXPECT_THAT(
       pass(),
       ElementsAre( "precreateAcl r", "createIpAclSubrule r 0.0", "createIpAclSubrule r 0.1",
                    "createIpAclSubrule r 0.2", "createIpAclSubrule r 0.3",
                    "createIpFragRule r 0.4", "createIpAclSubrule r 1.0", "createFinalAclRule r 2",
                    "prepareToCommit", "commitAcl r", "updateAclPorts r active" ) );
   for ( const SubruleCall& c : backEnd_->subrules ) {
      EXPECT_FALSE( c.dstRange() );
   }
   const auto& r = state( "r", AclType::ip );
   EXPECT_EQ( PendingReason::none, r.pending );
   EXPECT_EQ( Fennel::aclCreateSuccess, r.error );
   EXPECT_THAT( r.expanded, ElementsAre( std::pair{ 10u, Fennel::ExpandedRule{ 10, 4, 1 } } ) );
   EXPECT_THAT( pass(), IsEmpty() );
}

TEST_F( GenericAclSmTest, SettleRunsTheExpansionPassAtOnce ) {
   backEnd_->subruleResult = []( const SubruleCall& c ) {
      return c.dstRange() ? Fennel::aclCreateNoRangeChecker : Fennel::aclCreateSuccess;
   };
   listIs( config_, AclType::ip, "r", { ip4( 10, deny ).proto( udp ).dport( range( 1, 65534 ) ) } );
   bind( AclType::ip, "r", eth1 );
   EXPECT_EQ( 2u, machine_->settle() );
   EXPECT_TRUE( state( "r", AclType::ip ).committed );
   EXPECT_EQ( 30u, state( "r", AclType::ip ).expanded.at( 10 ).subrules );
}

TEST_F( GenericAclSmTest, EgressRangesAreBlocksFromTheStart ) {
   listIs( config_, AclType::ip, "e",
           { ip4( 10, deny ).proto( udp ).sport( range( 1, 65534 ) ).dport( gt( 1023 ) ) } );
   bind( AclType::ip, "e", eth1, AclDirection::out );
   pass();
   EXPECT_EQ( 30u * 6u, backEnd_->subrules.size() );
   for ( const SubruleCall& c : backEnd_->subrules ) {
      EXPECT_FALSE( c.srcRange() || c.dstRange() );
   }
   const auto& e = state( "e", AclType::ip, AclDirection::out );
   EXPECT_TRUE( e.committed );
   EXPECT_EQ( ( Fennel::ExpandedRule{ 10, 180, 1 } ), e.expanded.at( 10 ) );
}

TEST_F( GenericAclSmTest, AChangedListIsReappliedAfterDestroyAndAnUnchangedOneStays ) {
   listIs( config_, AclType::mac, "a", { macRule( 10, permit ) } );
   listIs( config_, AclType::mac, "b", { macRule( 10, deny ) } );
   bind( AclType::mac, "a", eth1 );
   bind( AclType::mac, "b", eth2 );
   pass();
   listIs( config_, AclType::mac, "a", { macRule( 10, permit ), macRule( 15, deny ) } );
   EXPECT_THAT( pass(),
                ElementsAre( "destroyAcl a", "precreateAcl a", "createMacAclRule a 0 seq 10",
                             "createMacAclRule a 1 seq 15", "createFinalAclRule a 2",
                             "prepareToCommit", "commitAcl a", "updateAclPorts a active" ) );
   EXPECT_EQ( 2u, state( "a", AclType::mac ).applications );
   EXPECT_EQ( 1u, state( "b", AclType::mac ).applications );
}

TEST_F( GenericAclSmTest, BindingsThatComeGoAndMove ) {
   listIs( config_, AclType::ip, "a", { ip4( 10, permit ) } );
   listIs( config_, AclType::ip, "b", { ip4( 10, deny ) } );
   bind( AclType::ip, "a", eth1 );
   bind( AclType::ip, "a", eth2 );
   pass();

   // A port goes: the mask shrinks from the last rule back; no reapply.
   intfConfig_->intfAclDel( AclType::ip, AclDirection::in, eth2 );
   EXPECT_THAT( pass(),
                ElementsAre( "removeIntfFromAcl a Ethernet2", "updateAclPorts a inactive" ) );
   // A port comes: the back-end fits it in.
   bind( AclType::ip, "a", eth3 );
   EXPECT_THAT( pass(), ElementsAre( "addIntfToAcl a Ethernet3", "updateAclPorts a active" ) );
   // The back-end asks for a reapply.
   backEnd_->addAnswer = true;
   bind( AclType::ip, "a", eth2 );
   EXPECT_THAT(
       pass(), ElementsAre( "addIntfToAcl a Ethernet2", "destroyAcl a", "precreateAcl a",
                            "createIpAclSubrule a 0.0", "createFinalAclRule a 1", "prepareToCommit",
                            "commitAcl a", "updateAclPorts a active" ) );
   backEnd_->addAnswer = false;

   // Every port moves from a to b: a goes, the ports pass straight to b.
   bind( AclType::ip, "b", eth1 );
   bind( AclType::ip, "b", eth2 );
   bind( AclType::ip, "b", eth3 );
   EXPECT_THAT(
       pass(), ElementsAre( "removeIntfFromAcl a Ethernet1 belongsToAnother",
                            "removeIntfFromAcl a Ethernet2 belongsToAnother",
                            "removeIntfFromAcl a Ethernet3 belongsToAnother", "destroyAcl a",
                            "cleanupAcl a", "addIntfToAcl b Ethernet1", "addIntfToAcl b Ethernet2",
                            "addIntfToAcl b Ethernet3", "precreateAcl b",
                            "createIpAclSubrule b 0.0", "createFinalAclRule b 1", "prepareToCommit",
                            "commitAcl b", "updateAclPorts b active" ) );
   EXPECT_EQ( nullptr, machine_->acl( AclKey( "a", AclType::ip, AclDirection::in ) ) );

   // The list goes from the configuration: its binding applies nothing, b is torn down.
   config_->aclConfigDel( AclType::ip, Vesper::Name( "b" ) );
   EXPECT_THAT( pass(),
                ElementsAre( "removeIntfFromAcl b Ethernet1", "removeIntfFromAcl b Ethernet2",
                             "removeIntfFromAcl b Ethernet3", "destroyAcl b", "cleanupAcl b" ) );
   EXPECT_TRUE( machine_->acls().empty() );
}

TEST_F( GenericAclSmTest, NeighborDiscoveryPermitsWhenTheBackEndAsks ) {
   listIs( config_, AclType::ipv6, "v6", { ip6( 10, deny ).proto( tcp ) } );
   bind( AclType::ipv6, "v6", eth1 );
   backEnd_->neighborDiscovery = true;
   EXPECT_THAT(
       pass(), ElementsAre( "hwInit", "addIntfToAcl v6 Ethernet1", "precreateAcl v6",
                            "createIpAclSubrule v6 0.0", "needToInstallIcmp6NeighborDiscoveryRules",
                            "createIpAclSubrule v6 1.0", "createIpAclSubrule v6 2.0",
                            "createIpAclSubrule v6 3.0", "createIpAclSubrule v6 4.0",
                            "createFinalAclRule v6 5", "prepareToCommit", "commitAcl v6",
                            "updateAclPorts v6 active" ) );
   std::vector<U16> types;
   for ( std::size_t i = 1; i < backEnd_->subrules.size(); ++i ) {
      const auto& f = backEnd_->subrules[i].rule.ip6Filter();
      EXPECT_EQ( icmp6, f.proto() );
      EXPECT_EQ( Acl::Action::permit, backEnd_->subrules[i].rule.action() );
      types.push_back( f.icmpType() );
   }
   EXPECT_THAT( types, ElementsAre( 133, 134, 135, 136 ) );
   const auto& v6 = state( "v6", AclType::ipv6 );
   EXPECT_EQ( RuleOrigin::Kind::neighborDiscovery, v6.rules[1].kind );
   EXPECT_EQ( std::nullopt, v6.seqOf( 4 ) );
}

TEST_F( GenericAclSmTest, AListWithARuleNoEntryCanCarryIsRefusedAndTouchesNothing ) {
   listIs( config_, AclType::ip, "bad",
           { ip4( 10, permit ), ip4( 20, deny ).proto( tcp ).vlan( 5, 0xFFF ) } );
   bind( AclType::ip, "bad", eth1 );
   EXPECT_THAT( pass(), ElementsAre( "hwInit", "addIntfToAcl bad Ethernet1" ) );
   const auto& bad = state( "bad", AclType::ip );
   EXPECT_EQ( Fennel::aclCreateNotExpressible, bad.error );
   EXPECT_EQ( "sequence 20: VLAN terms of IP rules are not served", bad.errorText );
   EXPECT_FALSE( machine_->passWanted() );
   // Fixed, it goes in.
   listIs( config_, AclType::ip, "bad", { ip4( 10, permit ) } );
   EXPECT_THAT( pass(), Contains( "commitAcl bad" ) );
   EXPECT_EQ( Fennel::aclCreateSuccess, bad.error );
}

TEST_F( GenericAclSmTest, ShortOfEntriesTheAclIsCommittedAndRetriedOnEveryPass ) {
   listIs( config_, AclType::mac, "m", { macRule( 10, permit ) } );
   bind( AclType::mac, "m", eth1 );
   backEnd_->macResult = Fennel::aclCreateNoEntries;
   backEnd_->dirtyIs( true );  // as the back-end marks itself on a failure
   // The units that have room are installed; a dirty unit is the back-end's to skip.
   EXPECT_THAT( pass(), Contains( "commitAcl m" ) );
   const auto& m = state( "m", AclType::mac );
   EXPECT_EQ( PendingReason::resources, m.pending );
   EXPECT_EQ( "sequence 10: no TCAM entries", m.errorText );
   EXPECT_EQ( Fennel::aclCreateNoEntries, m.status->createError() );
   EXPECT_TRUE( backEnd_->dirty() );
   EXPECT_EQ( 1u, machine_->settle() );  // no use trying twice at once

   backEnd_->macResult = Fennel::aclCreateSuccess;
   EXPECT_THAT( pass(),
                ElementsAre( "destroyAcl m", "precreateAcl m", "createMacAclRule m 0 seq 10",
                             "createFinalAclRule m 1", "prepareToCommit", "commitAcl m",
                             "updateAclPorts m active" ) );
   EXPECT_EQ( PendingReason::none, m.pending );
   EXPECT_FALSE( backEnd_->dirty() );
   EXPECT_FALSE( machine_->passWanted() );
}

TEST_F( GenericAclSmTest, DeferredUpdateAndDirtyAclsAskForAPass ) {
   listIs( config_, AclType::mac, "m", { macRule( 10, permit ) } );
   bind( AclType::mac, "m", eth1 );
   pass();
   backEnd_->needsDeferredUpdateIs( true );
   EXPECT_TRUE( machine_->passWanted() );
   EXPECT_THAT( pass(), IsEmpty() );
   EXPECT_FALSE( backEnd_->needsDeferredUpdate() );
   backEnd_->dirtyAclIs( AclKey( "m", AclType::mac, AclDirection::in ) );
   EXPECT_THAT( pass(), Contains( "destroyAcl m" ) );
   EXPECT_THAT( backEnd_->dirtyAcl(), IsEmpty() );
}

TEST_F( GenericAclSmTest, InterfacesBlockedAroundAnUpdateWhenTheConfigurationSaysDeny ) {
   listIs( config_, AclType::mac, "m", { macRule( 10, permit ) } );
   bind( AclType::mac, "m", eth1 );
   pass();
   params_->permitDuringAclUpdateConfigIs( Acl::PermitDuringAclUpdateConfig::deny );
   listIs( config_, AclType::mac, "m", { macRule( 10, deny ) } );
   const auto calls = pass();
   ASSERT_FALSE( calls.empty() );
   EXPECT_EQ( "blockIntf Ethernet1 block", calls.front() );
   EXPECT_EQ( "destroyAcl m", calls[1] );
   EXPECT_EQ( "blockIntf Ethernet1 unblock", calls.back() );
}

TEST_F( GenericAclSmTest, AnAclHeldForItsBlocksStaysBlockedUntilItGoesIn ) {
   backEnd_->subruleResult = []( const SubruleCall& c ) {
      return c.dstRange() ? Fennel::aclCreateNoRangeChecker : Fennel::aclCreateSuccess;
   };
   params_->permitDuringAclUpdateConfigIs( Acl::PermitDuringAclUpdateConfig::deny );
   listIs( config_, AclType::ip, "a", { ip4( 10, permit ) } );
   bind( AclType::ip, "a", eth1 );
   pass();
   listIs( config_, AclType::ip, "a", { ip4( 10, deny ).proto( udp ).dport( range( 5, 9 ) ) } );
   const auto held = pass();
   EXPECT_EQ( "blockIntf Ethernet1 block", held.front() );
   EXPECT_THAT( held, Not( Contains( "blockIntf Ethernet1 unblock" ) ) );
   EXPECT_THAT( held, Not( Contains( "commitAcl a" ) ) );
   const auto blocks = pass();
   EXPECT_THAT( blocks, Not( Contains( "blockIntf Ethernet1 block" ) ) );
   EXPECT_THAT( blocks, Contains( "commitAcl a" ) );
   EXPECT_EQ( "blockIntf Ethernet1 unblock", blocks.back() );
}

TEST_F( GenericAclSmTest, SubInterfaceBindingsAreNotServedAndSaySo ) {
   listIs( config_, AclType::ip, "a", { ip4( 10, permit ) } );
   bind( AclType::ip, "a", eth1.subIntf( 100 ) );
   EXPECT_THAT( pass(), ElementsAre( "hwInit" ) );
   EXPECT_THAT( machine_->bindingErrors(),
                ElementsAre( "Ethernet1.100: ip access-group a: ACLs on sub-interfaces are not "
                             "served yet" ) );
}

TEST_F( GenericAclSmTest, RouterAclsAreKeyedByTheirVlan ) {
   listIs( config_, AclType::ip, "r", { ip4( 10, permit ) } );
   bind( AclType::ip, "r", IntfId::vlan( Pylon::VlanId( 100 ) ) );
   pass();
   ASSERT_EQ( 1u, machine_->acls().size() );
   EXPECT_EQ( 100, machine_->acls().begin()->first.vlanId().value() );
}

}  // namespace
