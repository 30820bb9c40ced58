// One MAC rule on each stage: the field-processor command lines (Halyard::bcmFpCmd), the SDK
// calls in order, and what the chip model holds afterwards. Scope, priority and actions come
// from the common entry creation, the three match fields after them from the MAC rule.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "acl/HalyardAclHelperFpText.h"
#include "acl/HalyardAclPortMasks.h"
#include "platform/halyard/HalyardConstants.h"
#include "platform/vesper/Trace.h"
#include "sim/tcam/SimTcamEntryManager.h"
#include "tests/acl/rules/MacAclFixture.h"
#include "tests/support/ChipReadback.h"
#include "tests/support/TraceLines.h"

namespace AclRulesTest {
namespace {

using Halyard::fpPbmpText;
using HalyardTest::groupEntries;
using Sim::QualId;

constexpr U32 unit = 0;

enum class Stage { Vfp, Ifp, EfpByClass, EfpPerPort };

const char* stageName( Stage s ) {
   switch ( s ) {
      case Stage::Vfp:
         return "Vfp";
      case Stage::Ifp:
         return "Ifp";
      case Stage::EfpByClass:
         return "EfpByClass";
      case Stage::EfpPerPort:
         return "EfpPerPort";
   }
   return "?";
}

// deny 00:00:00:00:00:01 02:00:00:00:00:00 ff:00:00:00:00:00 0x0800
MacRuleSpec denyRule() {
   MacRuleSpec r;
   r.action = Acl::Action::deny;
   r.source = HalyardTest::macHost( Pylon::EthAddr( 0, 0, 0, 0, 0, 1 ) );
   r.destination = HalyardTest::MacTerm{ Pylon::EthAddr( 2, 0, 0, 0, 0, 0 ),
                                         Pylon::EthAddr( 0xff, 0, 0, 0, 0, 0 ) };
   r.etherType = 0x0800;
   return r;
}

std::vector<std::string> macFpLines( U32 e ) {
   const std::string n = std::to_string( e );
   return { "fp qual " + n + " EtherType 0x0800 0xffff",
            "fp qual " + n + " SrcMac 0x000000000001 0xffffffffffff",
            "fp qual " + n + " DstMac 0x020000000000 0xff0000000000" };
}

const std::vector<std::string> macCalls = {
    "bcm_field_qualify_EtherType( unit, entry, filter.proto(), 0xFFFF )",
    "bcm_field_qualify_SrcMac( unit, entry, srcMac, srcMacMask )",
    "bcm_field_qualify_DstMac( unit, entry, dstMac, dstMacMask )" };

std::vector<std::string> joined( std::vector<std::string> a, const std::vector<std::string>& b ) {
   a.insert( a.end(), b.begin(), b.end() );
   return a;
}

class EntryProgrammingTest : public MacAclFixture, public ::testing::WithParamInterface<Stage> {
 protected:
   EntryProgrammingTest() {
      // Without VFP room the ingress rule lands in IFP.
      build( layoutOf(), GetParam() == Stage::Ifp
                             ? groupsSized( "trident3", { Halyard::tcamGroupMacAclVfp }, 0 )
                             : HalyardTest::AgentOptions{} );
      ingress_ = GetParam() == Stage::Vfp || GetParam() == Stage::Ifp;
      if ( GetParam() == Stage::EfpPerPort ) {
         helper()
             .getHalyardAclTypeDirectionFeatureSm( Acl::mac_, Acl::out_,
                                                   Halyard::aclFeatureSecurity )
             ->unitData( unit )
             ->freeIntfClassDelAll();
      }
      acl_ = macAcl( "m", ingress_ ? Acl::in_ : Acl::out_, { intfOf( 0, 1 ), intfOf( 0, 2 ) } );
      acl_->precreated();
   }

   std::string ports12() {
      bcm_pbmp_t p;
      sw().sim().sdk().BCM_PBMP_CLEAR( p );
      sw().sim().sdk().BCM_PBMP_PORT_ADD( p, 1 );
      sw().sim().sdk().BCM_PBMP_PORT_ADD( p, 2 );
      return fpPbmpText( p );
   }

   // The lines and calls of scope and actions of the entry, as the stage writes them.
   std::vector<std::string> scopeFpLines( U32 e, U32 port );
   std::vector<std::string> scopeCalls();

   bool ingress_ = true;
   std::optional<HalyardTest::DrivenAcl> acl_;
};

std::vector<std::string> EntryProgrammingTest::scopeFpLines( U32 e, U32 port ) {
   const std::string n = std::to_string( e );
   const Sim::ChipKind& kind = sw().kind( unit );
   switch ( GetParam() ) {
      case Stage::Vfp:
         // VFP cannot drop: it stamps the type's bit and the drop bit for the management entries.
         return { "fp qual " + n + " InterfaceClassPort 255 0xFF",
                  "fp action add " + n + " ClassSourceSet 9" };
      case Stage::Ifp: {
         std::vector<std::string> lines = {
             "fp qual " + n + " InPorts " + ports12() + " " +
                 fpPbmpText( Halyard::allPortsMask[unit] ),
             "fp qual " + n + " DstClassL2 0 0x40",
             "fp qual " + n + " SrcClassField 0 0x1",
             "fp action add " + n + " SwitchToCpuCancel",
             "fp action add " + n + " CosQCpuNew 0",
             "fp action add " + n + " EgressMask " +
                 fpPbmpText( sw().sim().sdk().PBMP_PORT_ALL( int( unit ) ) ) };
         if ( kind.attribute( HalyardCentral::ChipAttribute::needsHgTrunkCancel ) ) {
            lines.push_back( "fp action add " + n + " HgTrunkCancel" );
         }
         lines.push_back( "fp action add " + n + " Drop" );
         return lines;
      }
      case Stage::EfpByClass:
         // The MAC field of the egress class: 0x30, first class out of the pool 48.
         return { "fp qual " + n + " InterfaceClassPort 48 0x30", "fp action add " + n + " Drop" };
      case Stage::EfpPerPort:
         return { "fp qual " + n + " OutPort " + std::to_string( port ) + " 0xFF",
                  "fp action add " + n + " Drop" };
   }
   return {};
}

std::vector<std::string> EntryProgrammingTest::scopeCalls() {
   switch ( GetParam() ) {
      case Stage::Vfp:
         return { "bcm_field_qualify_InterfaceClassPort( unit, entry, intfClass, intfClassMask )",
                  "bcm_field_action_add( unit, entry, bcmFieldActionClassSourceSet, newVfpClass, "
                  "0 )" };
      case Stage::Ifp: {
         std::vector<std::string> calls = {
             "bcm_field_qualify_InPorts( unit, entry, portMask, allPortsMask[unit] )",
             "bcm_field_qualify_DstClassL2( unit, entry, 0, classSkipAcls_ )",
             "bcm_field_qualify_SrcClassField( unit, entry, 0, vfpClass )",
             "bcm_field_action_add( unit, entry, bcmFieldActionSwitchToCpuCancel, 0, 0 )",
             "bcm_field_action_add( unit, entry, bcmFieldActionCosQCpuNew, cpuCosqDrop_, 0 )",
             "bcm_field_action_ports_add( unit, entry, bcmFieldActionEgressMask, PBMP_PORT_ALL( "
             "unit ) )" };
         if ( sw().kind( unit ).attribute( HalyardCentral::ChipAttribute::needsHgTrunkCancel ) ) {
            calls.push_back(
                "bcm_field_action_add( unit, entry, BCM_HG_TRUNK_CANCEL_ACTION( unit ), 0, 0 )" );
         }
         calls.push_back( "bcm_field_action_add( unit, entry, bcmFieldActionDrop, 0, 0 )" );
         return calls;
      }
      case Stage::EfpByClass:
         return { "bcm_field_qualify_InterfaceClassPort( unit, entry, intfClass, intfClassMask )",
                  "bcm_field_action_add( unit, entry, bcmFieldActionDrop, 0, 0 )" };
      case Stage::EfpPerPort:
         return { "bcm_field_qualify_OutPort( unit, entry, port, 0xFF )",
                  "bcm_field_action_add( unit, entry, bcmFieldActionDrop, 0, 0 )" };
   }
   return {};
}

Halyard::TcamGroupAssignment groupOfStage( Stage s ) {
   switch ( s ) {
      case Stage::Vfp:
         return Halyard::tcamGroupMacAclVfp;
      case Stage::Ifp:
         return Halyard::tcamGroupMacAcl;
      default:
         return Halyard::tcamGroupMacAclEgress;
   }
}

TEST_P( EntryProgrammingTest, OneRuleWritesScopeActionsThenMatchInOrder ) {
   HalyardTest::FpCmdCapture fp;
   Vesper::TraceCapture sdk( "Halyard::Acl*" );
   const Acl::RuleConfig rule = HalyardTest::macRule( denyRule() );
   ASSERT_EQ( helper().createMacAclRule( rule, rule.uniqueId(), acl_->data(), 0 ),
              Fennel::aclCreateSuccess );

   const std::vector<U32> entries = acl_->ruleEntries( unit, 0 );
   const bool perPort = GetParam() == Stage::EfpPerPort;
   ASSERT_EQ( entries.size(), perPort ? 2u : 1u ) << "one entry per port without a class";
   // Scope and actions of every entry come first, then the match of each.
   std::vector<std::string> wantLines;
   std::vector<std::string> wantCalls;
   if ( GetParam() == Stage::Ifp ) {
      // VFP ran dry at the first rule: the class goes back, and each port's class with it.
      for ( int port = 1; port <= 2; ++port ) {
         wantCalls.push_back( "bcm_port_class_get( unit, port, pclass, &ic )" );
         wantCalls.push_back( "bcm_port_class_set( unit, port, pclass, ic )" );
      }
   }
   for ( U32 i = 0; i < entries.size(); ++i ) {
      const U32 e = groupEntries( sw().chip( unit ), groupOfStage( GetParam() ) ).at( i );
      wantLines = joined( wantLines, scopeFpLines( e, i + 1 ) );
      wantCalls = joined( wantCalls, scopeCalls() );
   }
   for ( const U32 e : entries ) {
      EXPECT_EQ( HalyardTest::groupOf( sw().chip( unit ), e ), groupOfStage( GetParam() ) );
      wantLines = joined( wantLines, macFpLines( e ) );
      wantCalls = joined( wantCalls, macCalls );
   }
   if ( !perPort ) {
      EXPECT_EQ( fp.lines(), wantLines );
   } else {
      // The match goes on the entries in the order of the rule's set: compare entry by entry.
      for ( const U32 e : entries ) {
         const U32 port =
             e == groupEntries( sw().chip( unit ), groupOfStage( GetParam() ) )[0] ? 1 : 2;
         EXPECT_EQ( fp.linesOf( e ), joined( scopeFpLines( e, port ), macFpLines( e ) ) );
      }
   }
   EXPECT_EQ( HalyardTest::checkedCalls( sdk.lines() ), wantCalls );
}

TEST_P( EntryProgrammingTest, TheChipHoldsWhatTheLinesSayAndCommitInstallsIt ) {
   const Acl::RuleConfig rule = HalyardTest::macRule( denyRule() );
   ASSERT_EQ( helper().createMacAclRule( rule, rule.uniqueId(), acl_->data(), 0 ),
              Fennel::aclCreateSuccess );
   Sim::ChipModel& chip = sw().chip( unit );
   for ( const U32 e : acl_->ruleEntries( unit, 0 ) ) {
      SCOPED_TRACE( HalyardTest::entryText( chip, e ) );
      EXPECT_EQ( HalyardTest::numericQual( chip, e, QualId::EtherType ),
                 ( HalyardTest::NumericQual{ 0x0800, 0xFFFF } ) );
      EXPECT_FALSE( chip.entryInstalled( e ).value() );
      const auto manager = sw().groupManager()->tcamEntryMgr( e );
      EXPECT_EQ( chip.entryPriority( e ), manager->groupPriority() )
          << "every entry stands at its group's priority";
      EXPECT_EQ( acl_->common( unit )->aclRule( 0 )->entryFromVfp( e ), GetParam() == Stage::Vfp );
   }
   helper().prepareToCommit();
   helper().commitAcl( acl_->data() );
   for ( const U32 e : acl_->ruleEntries( unit, 0 ) ) {
      EXPECT_TRUE( chip.entryInstalled( e ).value() );
   }
   EXPECT_TRUE( acl_->common( unit )->installed() );
}

INSTANTIATE_TEST_SUITE_P( Stages, EntryProgrammingTest,
                          ::testing::Values( Stage::Vfp, Stage::Ifp, Stage::EfpByClass,
                                             Stage::EfpPerPort ),
                          []( const auto& info ) { return stageName( info.param ); } );

}  // namespace
}  // namespace AclRulesTest
