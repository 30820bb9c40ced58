// Combining the actions of several hits: a later stage overrides an earlier one, the CPU copy
// and its cancel are one family, and actions read back as stored. Conflicts between groups,
// drops and egress masks are tested end to end in tests/sim/lookup.
#include <functional>

#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

constexpr GroupId kIfpLow = 11;

class ActionCombineTest : public ChipTest {
 protected:
   ActionCombineTest() { EXPECT_EQ( Status::Ok, chip.groupCreate( kIfpLow, Stage::Ifp, 1 ) ); }

   EntryId withAction( GroupId g, ActionId a, U32 p1, U32 p2 = 0 ) {
      EntryId e = entry( g );
      EXPECT_EQ( Status::Ok, chip.actionIs( e, a, p1, p2 ) );
      install( e );
      return e;
   }
   EntryId withMask( GroupId g, const PortBitmap& ports ) {
      EntryId e = entry( g );
      EXPECT_EQ( Status::Ok, chip.actionPortsIs( e, ActionId::EgressMask, ports ) );
      install( e );
      return e;
   }
};

// One family with a single value: which group's value the verdict reports.
struct Family {
   const char* name;
   ActionId action;
   std::function<std::optional<U32>( const Verdict& )> read;
};

class FamilyConflict : public ActionCombineTest, public ::testing::WithParamInterface<Family> {};

TEST_P( FamilyConflict, LaterStageOverridesEarlier ) {
   const Family& f = GetParam();
   withAction( kVfp, f.action, 3 );
   withAction( kIfpLow, f.action, 4 );
   EXPECT_EQ( 4u, f.read( chip.lookup( tcp() ) ) );
}

INSTANTIATE_TEST_SUITE_P(
    Families, FamilyConflict,
    ::testing::Values(
        Family{ "CpuQueue", ActionId::CosQCpuNew, []( const Verdict& v ) { return v.cpuQueue; } },
        Family{ "InternalPriority", ActionId::PrioIntNew,
                []( const Verdict& v ) { return v.internalPriority; } },
        Family{ "Mirror", ActionId::MirrorIngressIndex,
                []( const Verdict& v ) { return v.mirror; } },
        Family{ "SourceClass", ActionId::ClassSourceSet,
                []( const Verdict& v ) { return std::optional<U32>( v.sourceClass ); } } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

TEST_F( ActionCombineTest, CpuCopyAndCancelAreOneFamily ) {
   withAction( kIfp, ActionId::SwitchToCpuCancel, 0 );
   withAction( kIfpLow, ActionId::CopyToCpu, 1, 4 );
   Verdict v = chip.lookup( tcp().toCpuIs() );
   EXPECT_FALSE( v.copyToCpu );
   EXPECT_EQ( std::nullopt, v.cpuMatchId );

   ASSERT_EQ( Status::Ok, chip.groupPriorityIs( kIfpLow, 50 ) );
   v = chip.lookup( tcp() );
   EXPECT_TRUE( v.copyToCpu );
   EXPECT_EQ( 4u, v.cpuMatchId );
}

TEST_F( ActionCombineTest, CancelTakesBackTheCopyOfForwardingAndOfVfp ) {
   withAction( kVfp, ActionId::CopyToCpu, 0, 0 );
   Verdict v = chip.lookup( tcp() );
   EXPECT_TRUE( v.copyToCpu );
   EXPECT_EQ( std::nullopt, v.cpuMatchId );  // param1 0: no match id reported

   withAction( kIfp, ActionId::SwitchToCpuCancel, 0 );
   EXPECT_FALSE( chip.lookup( tcp() ).copyToCpu );
   EXPECT_FALSE( chip.lookup( tcp().toCpuIs() ).copyToCpu );
}

TEST_F( ActionCombineTest, AForwardingCopyStaysWithoutACancel ) {
   withAction( kIfp, ActionId::Drop, 0 );
   Verdict v = chip.lookup( tcp().toCpuIs() );
   EXPECT_TRUE( v.dropped );
   EXPECT_TRUE( v.copyToCpu );
}

TEST_F( ActionCombineTest, CopyAndCancelExcludeEachOtherOnOneEntry ) {
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.actionIs( e, ActionId::CopyToCpu, 1, 3 ) );
   EXPECT_EQ( Status::Conflict, chip.actionIs( e, ActionId::SwitchToCpuCancel, 0, 0 ) );
   EXPECT_EQ( std::nullopt, chip.action( e, ActionId::SwitchToCpuCancel ) );
   EXPECT_EQ( ( ActionParams{ 1, 3 } ), chip.action( e, ActionId::CopyToCpu ) );
}

TEST_F( ActionCombineTest, DenyOfTheLibraryShapeDropsAndSteersCopiesToTheDropQueue ) {
   // cancel, drop queue, egress mask of all front-panel ports, drop: as an ingress deny reads.
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.actionIs( e, ActionId::SwitchToCpuCancel, 0, 0 ) );
   ASSERT_EQ( Status::Ok, chip.actionIs( e, ActionId::CosQCpuNew, 0, 0 ) );
   ASSERT_EQ( Status::Ok,
              chip.actionPortsIs( e, ActionId::EgressMask, PortBitmap::firstPorts( kPorts ) ) );
   ASSERT_EQ( Status::Ok, chip.actionIs( e, ActionId::Drop, 0, 0 ) );
   install( e );
   Verdict v = chip.lookup( tcp().toCpuIs().egressPortsIs( PortBitmap{ 2, 3 } ) );
   EXPECT_TRUE( v.dropped );
   EXPECT_FALSE( v.copyToCpu );
   EXPECT_EQ( 0u, v.cpuQueue );
   EXPECT_EQ( PortBitmap{}, v.egressPorts );
}

}  // namespace
}  // namespace Sim
