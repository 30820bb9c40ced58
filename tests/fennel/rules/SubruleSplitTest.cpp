// Ranges as aligned masked blocks, and rules as the subrules the back-end programs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "fennel/PortBlocks.h"
#include "fennel/Subrules.h"
#include "tests/fennel/common/Rules.h"

namespace {

using Fennel::PortBlock;
using Fennel::RangeForm;
using Fennel::SubruleTerm;
using namespace FennelTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The minimal cover by aligned blocks, found another way: walk the binary trie of the field and
// take every node whose whole span lies in the range.
U32 trieCover( U32 low, U32 high, U32 first = 0, U32 size = 0x10000 ) {
   const U32 last = first + size - 1;
   if ( last < low || first > high ) {
      return 0;
   }
   if ( first >= low && last <= high ) {
      return 1;
   }
   return trieCover( low, high, first, size / 2 ) +
          trieCover( low, high, first + size / 2, size / 2 );
}

void expectExactCover( U16 low, U16 high ) {
   const auto blocks = Fennel::rangeBlocks( low, high );
   ASSERT_EQ( trieCover( low, high ), blocks.size() ) << low << "-" << high;
   U32 next = low;
   for ( const PortBlock& b : blocks ) {
      // Aligned, adjacent, in rising order: together they are exactly [low, high].
      ASSERT_EQ( next, b.first() ) << low << "-" << high;
      ASSERT_EQ( 0, b.value & ~b.mask );
      ASSERT_EQ( U16( ~b.mask ) & U16( U16( ~b.mask ) + 1 ), 0 ) << "mask not a prefix";
      next = U32{ b.last() } + 1;
   }
   EXPECT_EQ( U32{ high } + 1, next );
}

TEST( RangeBlocks, CoverExactlyWithTheFewestBlocks ) {
   const std::pair<U16, U16> edges[] = { { 0, 0 },         { 0, 65535 }, { 1, 65534 },
                                         { 1024, 65535 },  { 0, 1023 },  { 80, 80 },
                                         { 65535, 65535 }, { 1, 2 },     { 32767, 32768 } };
   for ( auto [low, high] : edges ) {
      expectExactCover( low, high );
   }
   std::mt19937 rng( 7 );
   for ( int i = 0; i < 2000; ++i ) {
      U16 a = U16( rng() ), b = U16( rng() );
      expectExactCover( std::min( a, b ), std::max( a, b ) );
   }
}

TEST( RangeBlocks, CountsOfTheUsualRanges ) {
   EXPECT_EQ( 30u, Fennel::rangeBlocks( 1, 65534 ).size() );  // the worst 16-bit range
   EXPECT_EQ( 6u, Fennel::rangeBlocks( 1024, 65535 ).size() );
   EXPECT_THAT( Fennel::rangeBlocks( 0, 65535 ), ElementsAre( PortBlock{ 0, 0 } ) );
   EXPECT_THAT( Fennel::rangeBlocks( 1024, 2047 ), ElementsAre( PortBlock{ 1024, 0xFC00 } ) );
}

TEST( RangeBlocks, SingleBlockOnlyWhenTheRangeIsOne ) {
   EXPECT_EQ( ( PortBlock{ 0, 0xFC00 } ), Fennel::singleBlock( 0, 1023 ) );
   EXPECT_EQ( ( PortBlock{ 80, 0xFFFF } ), Fennel::singleBlock( 80, 80 ) );
   EXPECT_EQ( std::nullopt, Fennel::singleBlock( 1024, 65535 ) );
   EXPECT_EQ( std::nullopt, Fennel::singleBlock( 1, 2 ) );
}

TEST( ComplementRanges, NeqListsLeaveTheGapsBetween ) {
   using R = Fennel::PortRange;
   EXPECT_THAT( Fennel::complementRanges( { 80 } ), ElementsAre( R{ 0, 79 }, R{ 81, 65535 } ) );
   EXPECT_THAT( Fennel::complementRanges( { 0, 65535, 3, 3 } ),
                ElementsAre( R{ 1, 2 }, R{ 4, 65534 } ) );
   EXPECT_THAT( Fennel::complementRanges( { 0 } ), ElementsAre( R{ 1, 65535 } ) );
}

TEST( PortTerms, EachOperatorInBothForms ) {
   const auto checker = RangeForm::checker;
   const auto blocks = RangeForm::blocks;
   EXPECT_THAT( Fennel::portTerms( Acl::FieldTerm(), checker ), ElementsAre( SubruleTerm::any() ) );
   EXPECT_THAT( Fennel::portTerms( eq( { 443, 80, 80 } ), checker ),
                ElementsAre( SubruleTerm::exact( 80 ), SubruleTerm::exact( 443 ) ) );
   // lt 1024 is one block: value and mask, no checker.
   EXPECT_THAT( Fennel::portTerms( lt( 1024 ), checker ),
                ElementsAre( SubruleTerm{ 0, 0xFC00, 0, 1023 } ) );
   EXPECT_THAT( Fennel::portTerms( gt( 1023 ), checker ),
                ElementsAre( SubruleTerm::range( 1024, 65535 ) ) );
   EXPECT_EQ( 6u, Fennel::portTerms( gt( 1023 ), blocks ).size() );
   EXPECT_THAT( Fennel::portTerms( range( 7, 7 ), checker ),
                ElementsAre( SubruleTerm::exact( 7 ) ) );
   EXPECT_THAT( Fennel::portTerms( range( 0, 65535 ), checker ),
                ElementsAre( SubruleTerm::any() ) );
   EXPECT_THAT( Fennel::portTerms( neq( { 80 } ), checker ),
                ElementsAre( SubruleTerm::range( 0, 79 ), SubruleTerm::range( 81, 65535 ) ) );
   EXPECT_THAT( Fennel::portTerms( gt( 65535 ), checker ), IsEmpty() );
   EXPECT_THAT( Fennel::portTerms( lt( 0 ), blocks ), IsEmpty() );
   for ( const SubruleTerm& t : Fennel::portTerms( neq( { 80 } ), blocks ) ) {
      EXPECT_FALSE( t.needsRangeChecker() );
   }
}

TEST( LengthTerms, ExactLengthsAndRangesBothNeedTheChecker ) {
   EXPECT_THAT( Fennel::lengthTerms( eq( { 64 } ) ),
                ElementsAre( SubruleTerm{ 64, 0xFFFF, 64, 64 } ) );
   EXPECT_THAT( Fennel::lengthTerms( range( 0, 1023 ) ),
                ElementsAre( SubruleTerm::range( 0, 1023 ) ) );
   EXPECT_THAT( Fennel::lengthTerms( gt( 0 ) ), ElementsAre( SubruleTerm::range( 1, 65535 ) ) );
}

TEST( SplitIpRule, ProductOfTheTermListsSourceOutermost ) {
   const Acl::RuleConfig rule =
       ip4( 10, permit ).proto( tcp ).sport( eq( { 1, 2 } ) ).dport( range( 10, 20 ) );
   const auto split = Fennel::splitIpRule( rule.ipFilter(), RangeForm::checker );
   EXPECT_TRUE( split.l4Rule );
   EXPECT_TRUE( split.portRangeTerms );
   ASSERT_EQ( 2u, split.subrules.size() );
   EXPECT_EQ( SubruleTerm::exact( 1 ), split.subrules[0].src );
   EXPECT_EQ( SubruleTerm::exact( 2 ), split.subrules[1].src );
   EXPECT_EQ( SubruleTerm::range( 10, 20 ), split.subrules[1].dst );

   // 10-20 is 10-11, 12-15, 16-19, 20: four blocks for each source port.
   const auto expanded = Fennel::splitIpRule( rule.ipFilter(), RangeForm::blocks );
   EXPECT_FALSE( expanded.portRangeTerms );
   ASSERT_EQ( 8u, expanded.subrules.size() );
   EXPECT_EQ( ( SubruleTerm{ 10, 0xFFFE, 10, 11 } ), expanded.subrules[0].dst );
   EXPECT_EQ( SubruleTerm::exact( 2 ), expanded.subrules[4].src );
}

TEST( SplitIpRule, WhatCountsAsLayer4 ) {
   EXPECT_FALSE(
       Fennel::splitIpRule( ip4( 1, permit ).proto( tcp ).rule().ipFilter(), RangeForm::checker )
           .l4Rule );
   EXPECT_TRUE(
       Fennel::hasLayer4Terms( ip4( 1, permit ).proto( tcp ).flags( 2 ).rule().ipFilter() ) );
   EXPECT_TRUE(
       Fennel::hasLayer4Terms( ip4( 1, permit ).proto( icmp ).icmpType( 8 ).rule().ipFilter() ) );
   EXPECT_FALSE( Fennel::hasLayer4Terms( ip4( 1, permit ).proto( icmp ).rule().ipFilter() ) );
   EXPECT_TRUE( Fennel::hasLayer4Terms(
       ip6( 1, permit ).proto( icmp6 ).icmpType( 135 ).rule().ip6Filter() ) );
   // A term that admits every port is still a layer 4 term: the rule needs the header.
   EXPECT_TRUE( Fennel::hasLayer4Terms(
       ip4( 1, permit ).proto( udp ).dport( range( 0, 65535 ) ).rule().ipFilter() ) );
}

TEST( SplitIpRule, UnsatisfiableTermsGiveNoSubrule ) {
   const Acl::RuleConfig rule =
       ip4( 10, deny ).proto( tcp ).sport( eq( { 1 } ) ).dport( gt( 65535 ) );
   EXPECT_THAT( Fennel::splitIpRule( rule.ipFilter(), RangeForm::checker ).subrules, IsEmpty() );
}

}  // namespace
