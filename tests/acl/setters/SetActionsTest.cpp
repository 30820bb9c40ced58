// setActions on the simulated switch: every combination of deny, log, VFP
// stage, direction, allPorts and cancelCpuCopy, on a chip that wants the
// HiGig trunk cancel and on one that does not. Each case checks the SDK
// calls in order (their checked texts), the fp command lines, the actions
// and port key that the chip model holds afterwards, and the manager's port
// key. The edge cases and the outcome table follow as literal expectations.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "acl/HalyardAclHelper.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"
#include "sim/sdk/SimSdk.h"
#include "tests/acl/setters/SetterUnit.h"

namespace AclSettersTest {
namespace {

using Sim::ActionId;
using Sim::ActionParams;

constexpr U32 baseVfpClass = 2;

std::string pbmpText( const bcm_pbmp_t& pbmp ) {
   std::string text = "0x";
   for ( int word = bcm_pbmp_t::tracedWordCount - 1; word >= 0; --word ) {
      char digits[16];
      std::snprintf( digits, sizeof digits, "%08x", static_cast<unsigned>( pbmp.pbits[word] ) );
      text += digits;
   }
   return text;
}

struct ActionFlags {
   bool deny = false;
   bool log = false;
   bool vfp = false;
   bool ingress = true;
   bool allPorts = false;
   bool cancelCpuCopy = false;
};

// What setActions is to leave behind: the checked calls and fp lines in
// order, and the chip's actions and port key.
struct Outcome {
   std::vector<std::string> calls;
   std::vector<std::string> fpLines;
   std::map<ActionId, ActionParams> actions;
   bool egressMask = false;
   bool inPorts = false;
};

// Builds an Outcome step by step, in the words of the outcome table.
class OutcomeBuilder {
 public:
   OutcomeBuilder( U32 entry, ActionId hgCancel )
       : entry_( std::to_string( entry ) ), hg_( hgCancel ) {}

   void cancelCpuCopy() {
      action( "bcmFieldActionSwitchToCpuCancel, 0, 0", " SwitchToCpuCancel",
              ActionId::SwitchToCpuCancel, { 0, 0 } );
      action( "bcmFieldActionCosQCpuNew, cpuCosqDrop_, 0", " CosQCpuNew 0", ActionId::CosQCpuNew,
              { 0, 0 } );
   }
   void egressMask( const bcm_pbmp_t& frontPanel ) {
      out_.calls.push_back(
          "bcm_field_action_ports_add( unit, entry, bcmFieldActionEgressMask, PBMP_PORT_ALL( unit "
          ") )" );
      out_.fpLines.push_back( "fp action add " + entry_ + " EgressMask " + pbmpText( frontPanel ) );
      out_.egressMask = true;
   }
   void hgTrunkCancel() {
      action( "BCM_HG_TRUNK_CANCEL_ACTION( unit ), 0, 0", " HgTrunkCancel", hg_, { 0, 0 } );
   }
   void drop() { action( "bcmFieldActionDrop, 0, 0", " Drop", ActionId::Drop, { 0, 0 } ); }
   void logCopy( U32 matchRule ) {
      action( "bcmFieldActionPrioIntNew, TC_ACL_LOG, 0", " PrioIntNew 10", ActionId::PrioIntNew,
              { 10, 0 } );
      action( "bcmFieldActionCopyToCpu, 1, matchRule",
              " CopyToCpu 1 " + std::to_string( matchRule ), ActionId::CopyToCpu,
              { 1, matchRule } );
   }
   void allEthernetPorts( const bcm_pbmp_t& ethernet, const bcm_pbmp_t& all ) {
      out_.calls.push_back(
          "bcm_field_qualify_InPorts( unit, entry, PBMP_E_ALL( unit ), PBMP_ALL( unit ) )" );
      out_.fpLines.push_back( "fp qual " + entry_ + " InPorts " + pbmpText( ethernet ) + " " +
                              pbmpText( all ) );
      out_.inPorts = true;
   }
   void sourceClass( U32 cls ) {
      action( "bcmFieldActionClassSourceSet, newVfpClass, 0",
              " ClassSourceSet " + std::to_string( cls ), ActionId::ClassSourceSet, { cls, 0 } );
   }
   const Outcome& outcome() const { return out_; }

 private:
   void action( const std::string& args, const std::string& fp, ActionId id, ActionParams p ) {
      out_.calls.push_back( "bcm_field_action_add( unit, entry, " + args + " )" );
      out_.fpLines.push_back( "fp action add " + entry_ + fp );
      out_.actions[id] = p;
   }

   std::string entry_;
   ActionId hg_;
   Outcome out_;
};

class SetActionsTest : public ::testing::Test {
 protected:
   void build( const std::string& kindName ) { unit_.emplace( kindName ); }
   // The entry of the stage the flags name: VFP, else IFP on ingress, EFP on egress.
   U32 entryFor( const ActionFlags& f ) {
      if ( f.vfp ) {
         return unit_->newEntry( Halyard::tcamGroupIpAclVfp );
      }
      return unit_->newEntry( f.ingress ? Halyard::tcamGroupIpAcl : Halyard::tcamGroupIpAclEgress );
   }
   void run( U32 entry, const ActionFlags& f ) {
      fpCmd_.clear();
      helperTrace_.clear();
      Halyard::setActions( SetterUnit::unit, unit_->groupMgr(), entry,
                           f.deny ? Acl::Action::deny : Acl::Action::permit, f.log, f.vfp,
                           f.ingress ? Acl::AclDirection::in : Acl::AclDirection::out, baseVfpClass,
                           f.allPorts, f.cancelCpuCopy );
   }
   OutcomeBuilder builder( U32 entry ) {
      const bool groupC = unit_->kind().probes.groupC;
      return OutcomeBuilder(
          entry, groupC ? ActionId::HgTrunkResolveCancel : ActionId::TrunkLoadBalanceCancel );
   }
   bool needsHgTrunkCancel() const {
      return unit_->attribute( HalyardCentral::ChipAttribute::needsHgTrunkCancel );
   }
   bcm_pbmp_t frontPanel() { return unit_->sdk().PBMP_PORT_ALL( sdkUnit ); }
   bcm_pbmp_t ethernet() { return unit_->sdk().PBMP_E_ALL( sdkUnit ); }
   bcm_pbmp_t allPorts() { return unit_->sdk().PBMP_ALL( sdkUnit ); }

   // Everything visible after setActions agrees with `want`.
   void expectOutcome( U32 entry, const Outcome& want ) {
      EXPECT_EQ( checkedCalls( helperTrace_.lines() ), want.calls );
      EXPECT_EQ( fpCmd_.lines(), want.fpLines );
      Sim::ChipModel& chip = unit_->chip();
      for ( std::size_t i = 0; i < Sim::kActionCount; ++i ) {
         const auto id = static_cast<ActionId>( i );
         if ( Sim::isPortAction( id ) ) {
            continue;
         }
         const auto it = want.actions.find( id );
         const std::optional<ActionParams> expected =
             it == want.actions.end() ? std::nullopt : std::optional( it->second );
         EXPECT_EQ( chip.action( entry, id ), expected ) << Sim::actionName( id );
      }
      const std::optional<Sim::PortBitmap> mask = chip.actionPorts( entry, ActionId::EgressMask );
      EXPECT_EQ( mask, want.egressMask ? std::optional( Sim::portBitmapOf( frontPanel() ) )
                                       : std::nullopt );
      const std::optional<Sim::InPortsValue> key = chip.inPorts( entry );
      if ( want.inPorts ) {
         ASSERT_TRUE( key.has_value() );
         EXPECT_EQ( key->data, Sim::portBitmapOf( ethernet() ) );
         EXPECT_EQ( key->mask, Sim::portBitmapOf( allPorts() ) );
         EXPECT_EQ( unit_->portKey( entry ), ethernet() );
      } else {
         EXPECT_FALSE( key.has_value() );
      }
      EXPECT_EQ( unit_->portKeyPermanent( entry ), want.inPorts );
      EXPECT_EQ( unit_->sdk().gate().lockViolations(), 0u )
          << "an SDK call was made with the activity lock held";
   }

   static constexpr int sdkUnit = static_cast<int>( SetterUnit::unit );
   Vesper::ActivityLockGuard activity_;
   std::optional<SetterUnit> unit_;
   Vesper::TraceCapture fpCmd_{ "Halyard::bcmFpCmd" };
   Vesper::TraceCapture helperTrace_{ setterTraceHandle };
};

// ---- Every combination, against the outcome table's reading.

using Combination = std::tuple<bool, bool, bool, bool, bool, bool, std::string>;

class SetActionsCombinationTest : public SetActionsTest,
                                  public ::testing::WithParamInterface<Combination> {
 protected:
   ActionFlags flags() const {
      const auto& [deny, log, vfp, ingress, allPortsFlag, cancel, kind] = GetParam();
      return ActionFlags{ deny, log, vfp, ingress, allPortsFlag, cancel };
   }

   // The outcome table with its flags: a VFP deny only marks the source class;
   // another deny drops (ingress: egress mask, cancel unless logged, copy when
   // logged); all ports on ingress come next, then the VFP class, then the
   // cancel of an earlier copy, which a logged deny never takes. A logged deny
   // ends after its drop on egress, and after its copy on ingress unless keyed
   // on all ports.
   Outcome expected( U32 entry ) {
      const ActionFlags f = flags();
      OutcomeBuilder b = builder( entry );
      U32 vfpClass = baseVfpClass;
      if ( f.deny && f.vfp ) {
         vfpClass |= f.log ? 0x18 : 0x08;
      } else if ( f.deny && f.ingress ) {
         if ( !f.log ) {
            b.cancelCpuCopy();
         }
         b.egressMask( frontPanel() );
         if ( needsHgTrunkCancel() ) {
            b.hgTrunkCancel();
         }
         b.drop();
         if ( f.log ) {
            b.logCopy( f.allPorts ? 4 : 3 );
            if ( !f.allPorts ) {
               return b.outcome();
            }
         }
      } else if ( f.deny ) {
         b.drop();
         if ( f.log ) {
            return b.outcome();
         }
      }
      if ( f.allPorts && f.ingress ) {
         b.allEthernetPorts( ethernet(), allPorts() );
      }
      if ( f.vfp ) {
         b.sourceClass( vfpClass );
      }
      if ( f.cancelCpuCopy && f.ingress && !( f.deny && f.log ) ) {
         b.cancelCpuCopy();
      }
      return b.outcome();
   }
};

TEST_P( SetActionsCombinationTest, ProgramsTheOutcomeOfItsFlags ) {
   build( std::get<6>( GetParam() ) );
   const U32 entry = entryFor( flags() );
   ASSERT_NE( entry, 0u );
   run( entry, flags() );
   expectOutcome( entry, expected( entry ) );
}

std::string combinationName( const ::testing::TestParamInfo<Combination>& info ) {
   const auto& [deny, log, vfp, ingress, allPortsFlag, cancel, kind] = info.param;
   std::string name = deny ? "Deny" : "Permit";
   name += log ? "Log" : "";
   name += vfp ? "Vfp" : "";
   name += ingress ? "In" : "Out";
   name += allPortsFlag ? "AllPorts" : "";
   name += cancel ? "CancelCopy" : "";
   return name + "_" + kind;
}

// trident2 wants the HiGig trunk cancel on a drop, tomahawk does not.
INSTANTIATE_TEST_SUITE_P( AllFlags, SetActionsCombinationTest,
                          ::testing::Combine( ::testing::Bool(), ::testing::Bool(),
                                              ::testing::Bool(), ::testing::Bool(),
                                              ::testing::Bool(), ::testing::Bool(),
                                              ::testing::Values( "trident2", "tomahawk" ) ),
                          combinationName );

// ---- The outcome table and the edge cases, as literal call lists.

class SetActionsCaseTest : public SetActionsTest {
 protected:
   void SetUp() override { build( "tomahawk" ); }
};

TEST_F( SetActionsCaseTest, IngressDenyOutsideVfpCancelsMasksAndDrops ) {
   const ActionFlags f{ .deny = true };
   const U32 entry = entryFor( f );
   run( entry, f );
   const std::vector<std::string> calls{
       "bcm_field_action_add( unit, entry, bcmFieldActionSwitchToCpuCancel, 0, 0 )",
       "bcm_field_action_add( unit, entry, bcmFieldActionCosQCpuNew, cpuCosqDrop_, 0 )",
       "bcm_field_action_ports_add( unit, entry, bcmFieldActionEgressMask, PBMP_PORT_ALL( unit ) )",
       "bcm_field_action_add( unit, entry, bcmFieldActionDrop, 0, 0 )" };
   EXPECT_EQ( checkedCalls( helperTrace_.lines() ), calls );
   EXPECT_EQ( unit_->sdk().callCount( "bcm_field_action_add" ), 3u );
   EXPECT_EQ( unit_->sdk().callCount( "bcm_field_action_ports_add" ), 1u );
}

TEST_F( SetActionsCaseTest, VfpDenyOnlyMarksTheSourceClass ) {
   for ( const bool log : { false, true } ) {
      const ActionFlags f{ .deny = true, .log = log, .vfp = true };
      const U32 entry = entryFor( f );
      run( entry, f );
      const U32 cls = baseVfpClass | ( log ? 24u : 8u );
      EXPECT_EQ( fpCmd_.lines(),
                 std::vector<std::string>{ "fp action add " + std::to_string( entry ) +
                                           " ClassSourceSet " + std::to_string( cls ) } );
      EXPECT_EQ( unit_->chip().action( entry, ActionId::ClassSourceSet ),
                 std::optional( ActionParams{ cls, 0 } ) );
      EXPECT_FALSE( unit_->chip().action( entry, ActionId::Drop ).has_value() );
   }
}

TEST_F( SetActionsCaseTest, LoggedVfpDenyOnAllPortsKeysPortsThenMarksAndNothingElse ) {
   const ActionFlags f{ .deny = true, .log = true, .vfp = true, .allPorts = true };
   const U32 entry = entryFor( f );
   run( entry, f );
   EXPECT_EQ( checkedCalls( helperTrace_.lines() ),
              ( std::vector<std::string>{
                  "bcm_field_qualify_InPorts( unit, entry, PBMP_E_ALL( unit ), PBMP_ALL( unit ) )",
                  "bcm_field_action_add( unit, entry, bcmFieldActionClassSourceSet, newVfpClass, "
                  "0 )" } ) );
   EXPECT_EQ( unit_->chip().action( entry, ActionId::ClassSourceSet ),
              std::optional( ActionParams{ baseVfpClass | 24u, 0 } ) );
}

TEST_F( SetActionsCaseTest, LoggedEgressDenyDropsAndHonoursNoFlag ) {
   const ActionFlags f{
       .deny = true, .log = true, .ingress = false, .allPorts = true, .cancelCpuCopy = true };
   const U32 entry = entryFor( f );
   run( entry, f );
   EXPECT_EQ( checkedCalls( helperTrace_.lines() ),
              std::vector<std::string>{
                  "bcm_field_action_add( unit, entry, bcmFieldActionDrop, 0, 0 )" } );
   EXPECT_FALSE( unit_->chip().inPorts( entry ).has_value() );
}

TEST_F( SetActionsCaseTest, LoggedIngressDenyOnAllPortsKeepsItsCopyDespiteCancel ) {
   const ActionFlags f{ .deny = true, .log = true, .allPorts = true, .cancelCpuCopy = true };
   const U32 entry = entryFor( f );
   run( entry, f );
   const std::vector<std::string> calls = checkedCalls( helperTrace_.lines() );
   ASSERT_FALSE( calls.empty() );
   EXPECT_EQ( calls.back(),
              "bcm_field_qualify_InPorts( unit, entry, PBMP_E_ALL( unit ), PBMP_ALL( unit ) )" );
   EXPECT_EQ( unit_->chip().action( entry, ActionId::CopyToCpu ),
              std::optional( ActionParams{ 1, 4 } ) );
   EXPECT_FALSE( unit_->chip().action( entry, ActionId::SwitchToCpuCancel ).has_value() );
}

TEST_F( SetActionsCaseTest, PermitWithCancelAddsTheCancelPairAlone ) {
   const ActionFlags f{ .cancelCpuCopy = true };
   const U32 entry = entryFor( f );
   run( entry, f );
   EXPECT_EQ(
       checkedCalls( helperTrace_.lines() ),
       ( std::vector<std::string>{
           "bcm_field_action_add( unit, entry, bcmFieldActionSwitchToCpuCancel, 0, 0 )",
           "bcm_field_action_add( unit, entry, bcmFieldActionCosQCpuNew, cpuCosqDrop_, 0 )" } ) );
   EXPECT_EQ( unit_->chip().action( entry, ActionId::CosQCpuNew ),
              std::optional( ActionParams{ 0, 0 } ) );
}

}  // namespace
}  // namespace AclSettersTest
