// Range checkers: shared by equal ranges per unit, limited per chip and per entry, and given
// back to the pool once the last use and the last entry let go.
#include "tests/sim/tcam/TcamFixture.h"

namespace Sim {
namespace {

using namespace Halyard;

const RangeCheckerDesc kDst1k{ 1000, 2000, rangeCheckerDstPort };
const RangeCheckerDesc kSrc1k{ 1000, 2000, rangeCheckerSrcPort };
const RangeCheckerDesc kLen{ 64, 128, rangeCheckerIpLength };
const RangeCheckerDesc kDst3k{ 3000, 4000, rangeCheckerDstPort };

class RangeCheckers : public TcamTest {};

TEST_F( RangeCheckers, EqualRangesShareOneCheckerUntilTheLastRelease ) {
   const U32 id = ip->getRangeChecker( kUnit, kDst1k );
   ASSERT_NE( 0u, id );
   EXPECT_EQ( id, mac->getRangeChecker( kUnit, kDst1k ) ) << "shared across managers";
   EXPECT_EQ( 2u, gm->rangeCheckerUses( kUnit, kDst1k ) );
   const U32 src = ip->getRangeChecker( kUnit, kSrc1k );
   EXPECT_NE( id, src ) << "same bounds, other type";
   EXPECT_EQ( ( RangeChecker{ RangeType::DstPort, 1000, 2000 } ), chip.rangeChecker( id ) );
   EXPECT_EQ( ( RangeChecker{ RangeType::SrcPort, 1000, 2000 } ), chip.rangeChecker( src ) );
   EXPECT_NE( 0u, ip->getRangeChecker( kOther, kDst1k ) );
   EXPECT_EQ( 1u, gm->rangeCheckerUses( kOther, kDst1k ) ) << "per unit";

   ip->releaseRangeChecker( kUnit, kDst1k );
   EXPECT_EQ( 1u, gm->rangeCheckerUses( kUnit, kDst1k ) );
   EXPECT_TRUE( chip.rangeChecker( id ) );
   mac->releaseRangeChecker( kUnit, kDst1k );
   EXPECT_EQ( std::nullopt, gm->rangeCheckerId( kUnit, kDst1k ) );
   EXPECT_EQ( std::nullopt, chip.rangeChecker( id ) );
   EXPECT_EQ( id, ip->getRangeChecker( kUnit, kLen ) ) << "the freed id serves another range";
   EXPECT_EQ( 1u, otherChip.rangeCheckerIds().size() );
}

TEST_F( RangeCheckers, AnAttachedCheckerDecidesTheLookup ) {
   const U32 e = ip->getEntry( kUnit, "acl" );
   const U32 id = ip->getRangeChecker( kUnit, kDst1k );
   EXPECT_EQ( codes.none, ip->attachRangeChecker( kUnit, e, id ) );
   EXPECT_EQ( Status::Ok, chip.actionIs( e, ActionId::Drop, 0, 0 ) );
   ip->installEntry( kUnit, e );
   EXPECT_TRUE( chip.lookup( tcpTo( 1500 ) ).dropped );
   EXPECT_TRUE( chip.lookup( tcpTo( 2000 ) ).dropped );
   EXPECT_FALSE( chip.lookup( tcpTo( 2001 ) ).dropped );
   EXPECT_FALSE( chip.lookup( tcpTo( 80, 1500 ) ).dropped );
}

TEST_F( RangeCheckers, TheIdStaysWhileAnEntryStillRefersToIt ) {
   const U32 e = ip->getEntry( kUnit, "acl" );
   const U32 id = ip->getRangeChecker( kUnit, kDst1k );
   ip->attachRangeChecker( kUnit, e, id );
   // Teardown gives the rule's checkers back before its entries.
   ip->releaseRangeChecker( kUnit, kDst1k );
   EXPECT_EQ( 0u, gm->rangeCheckerUses( kUnit, kDst1k ) );
   EXPECT_TRUE( chip.rangeChecker( id ) ) << "the entry still refers to it";
   EXPECT_EQ( id, ip->getRangeChecker( kUnit, kDst1k ) ) << "asked again, it serves again";
   ip->releaseRangeChecker( kUnit, kDst1k );
   ip->releaseEntry( kUnit, e );
   EXPECT_EQ( std::nullopt, chip.rangeChecker( id ) );
   EXPECT_EQ( std::nullopt, gm->rangeCheckerId( kUnit, kDst1k ) );
}

TEST_F( RangeCheckers, AnEntryTakesAtMostItsLimit ) {
   const U32 e = ip->getEntry( kUnit, "acl" );
   const U32 ids[] = { ip->getRangeChecker( kUnit, kDst1k ), ip->getRangeChecker( kUnit, kSrc1k ),
                       ip->getRangeChecker( kUnit, kLen ), ip->getRangeChecker( kUnit, kDst3k ) };
   for ( U32 id : { ids[0], ids[1], ids[2] } ) {
      EXPECT_EQ( codes.none, ip->attachRangeChecker( kUnit, e, id ) );
   }
   EXPECT_EQ( codes.resource, ip->attachRangeChecker( kUnit, e, ids[3] ) );
   EXPECT_EQ( 3u, chip.rangeChecks( e )->size() );
   EXPECT_EQ( codes.none, ip->attachRangeChecker( kUnit, e, ids[0] ) ) << "already there";
   const U32 other = ip->getEntry( kUnit, "acl" );
   EXPECT_EQ( codes.none, ip->attachRangeChecker( kUnit, other, ids[3] ) );
   EXPECT_EQ( codes.notFound, ip->attachRangeChecker( kUnit, 4242, ids[3] ) );
   ip->releaseRangeChecker( kUnit, kDst3k );
   EXPECT_EQ( codes.notFound, ip->attachRangeChecker( kOther, other, ids[0] ) );
}

TEST_F( RangeCheckers, TheChipLimitGivesZeroAndNotifiesEachTransition ) {
   RangeCheckersLog log;
   log.notifierIs( gm );
   for ( U32 low = 1; low < 4; ++low ) {
      EXPECT_NE( 0u, ip->getRangeChecker( kUnit, { low, 100, rangeCheckerSrcPort } ) );
   }
   EXPECT_TRUE( log.take().empty() );
   EXPECT_FALSE( gm->rangeCheckersExhausted( kUnit ) );
   EXPECT_NE( 0u, ip->getRangeChecker( kUnit, kDst1k ) );
   EXPECT_EQ( std::vector<U32>{ kUnit }, log.take() );
   EXPECT_TRUE( gm->rangeCheckersExhausted( kUnit ) );
   EXPECT_EQ( 0u, ip->getRangeChecker( kUnit, kDst3k ) );
   EXPECT_NE( 0u, ip->getRangeChecker( kUnit, kDst1k ) ) << "a range in place is still shared";
   EXPECT_TRUE( log.take().empty() );
   ip->releaseRangeChecker( kUnit, kDst1k );
   EXPECT_TRUE( log.take().empty() ) << "one use left";
   ip->releaseRangeChecker( kUnit, kDst1k );
   EXPECT_EQ( std::vector<U32>{ kUnit }, log.take() );
   EXPECT_FALSE( gm->rangeCheckersExhausted( kUnit ) );
   EXPECT_FALSE( gm->rangeCheckersExhausted( kOther ) );
}

TEST_F( RangeCheckers, ALimitBelowTheChipsPool ) {
   ChipModel small{ ChipConfig{ 8, 0, 32, 4 } };
   auto gm2 = SimTcamGroupManager::create( smallTable(), codes );
   UnitLimits limits = UnitLimits::of( small );
   limits.rangeCheckers = 1;
   gm2->unitIs( kUnit, small, limits );
   auto em = gm2->unboundedEntryManager( tcamGroupIpAcl );
   EXPECT_NE( 0u, em->getRangeChecker( kUnit, kDst1k ) );
   EXPECT_TRUE( gm2->rangeCheckersExhausted( kUnit ) );
   EXPECT_EQ( 0u, em->getRangeChecker( kUnit, kSrc1k ) );
   limits.rangeCheckers = 100;
   ChipModel other{ ChipConfig{ 8, 0, 2, 4 } };
   gm2->unitIs( kOther, other, limits );
   EXPECT_EQ( 2u, gm2->unitLimits( kOther )->rangeCheckers ) << "cut to the chip's pool";
}

TEST_F( RangeCheckers, AReleaseWithoutAUseIsIgnored ) {
   const U32 e = ip->getEntry( kUnit, "acl" );
   const U32 id = ip->getRangeChecker( kUnit, kDst1k );
   ip->attachRangeChecker( kUnit, e, id );
   // A later subrule of the rule reuses the id, fails to attach and gives one use back; the
   // rule gives it back again at teardown.
   ip->releaseRangeChecker( kUnit, kDst1k );
   ip->releaseRangeChecker( kUnit, kDst1k );
   ip->releaseRangeChecker( kUnit, kSrc1k );
   EXPECT_EQ( 0u, gm->rangeCheckerUses( kUnit, kDst1k ) );
   EXPECT_EQ( id, ip->getRangeChecker( kUnit, kDst1k ) );
   EXPECT_EQ( 1u, gm->rangeCheckerUses( kUnit, kDst1k ) );
}

TEST_F( RangeCheckers, RangesTheChipCannotServe ) {
   EXPECT_THROW( ip->getRangeChecker( kUnit, { 1, 2, 7 } ), Vesper::RangeException );
   EXPECT_EQ( 0u, ip->getRangeChecker( kUnit, { 2000, 1000, rangeCheckerDstPort } ) );
   EXPECT_TRUE( chip.rangeCheckerIds().empty() );
}

}  // namespace
}  // namespace Sim
