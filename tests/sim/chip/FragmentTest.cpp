// IpFrag over every fragment state of IPv4 and IPv6 packets.
#include <tuple>

#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

enum class FragState { Whole, First, Middle, Last };

Packet fragmented( bool v6, FragState s ) {
   Packet p = v6 ? Packet::tcp6( ip6( "2001:db8::1" ), ip6( "2001:db8::2" ), 1, 80 )
                 : Packet::tcp4( ip4( "10.0.0.1" ), ip4( "10.0.0.2" ), 1, 80 );
   p.ingressPortIs( 1 ).egressPortIs( 2 );
   switch ( s ) {
      case FragState::Whole:
         return p;
      case FragState::First:
         return p.fragmentIs( true, 0 );
      case FragState::Middle:
         return p.fragmentIs( true, 185 );
      case FragState::Last:
         return p.fragmentIs( false, 370 );
   }
   return p;
}

// Which states each IpFrag value matches: Whole, First, Middle, Last.
bool expected( IpFrag f, FragState s ) {
   const bool whole = s == FragState::Whole;
   const bool first = s == FragState::First;
   switch ( f ) {
      case IpFrag::Non:
         return whole;
      case IpFrag::First:
         return first;
      case IpFrag::NonOrFirst:
         return whole || first;
      case IpFrag::NotFirst:
         return !whole && !first;
      case IpFrag::Any:
         return !whole;
   }
   return false;
}

class FragmentMatch : public ChipTest,
                      public ::testing::WithParamInterface<std::tuple<IpFrag, FragState, bool> > {};

TEST_P( FragmentMatch, IpFragFollowsMoreFragmentsAndOffset ) {
   const auto [frag, state, v6] = GetParam();
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.ipFragIs( e, frag ) );
   install( e );
   EXPECT_EQ( expected( frag, state ), chip.lookup( fragmented( v6, state ) ).hitIn( kIfp ) == e );
   EXPECT_EQ( frag, chip.ipFrag( e ) );
}

INSTANTIATE_TEST_SUITE_P(
    AllStates, FragmentMatch,
    ::testing::Combine( ::testing::Values( IpFrag::Non, IpFrag::First, IpFrag::NonOrFirst,
                                           IpFrag::NotFirst, IpFrag::Any ),
                        ::testing::Values( FragState::Whole, FragState::First, FragState::Middle,
                                           FragState::Last ),
                        ::testing::Bool() ) );

TEST_F( ChipTest, LaterFragmentsCarryNoLayer4Fields ) {
   // A rule on port 80 must not catch later fragments, whose port bytes are payload.
   EntryId e = dropOn( kIfp, QualId::L4DstPort, 80, 0xFFFF );
   EXPECT_TRUE( chip.lookup( fragmented( false, FragState::First ) ).dropped );
   EXPECT_FALSE( chip.lookup( fragmented( false, FragState::Last ) ).dropped );
   EXPECT_EQ( 1u, chip.entryHits( e ) );
}

TEST_F( ChipTest, NonIpPacketsAreNoFragments ) {
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.ipFragIs( e, IpFrag::Non ) );
   install( e );
   EXPECT_EQ( e,
              chip.lookup( Packet::ethernet( kEtherTypeArp ).ingressPortIs( 1 ) ).hitIn( kIfp ) );
}

}  // namespace
}  // namespace Sim
