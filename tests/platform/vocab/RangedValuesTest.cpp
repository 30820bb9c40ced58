// Every range-limited value of the vocabulary, at both edges of its range:
// the last good value on each side stands, the first bad one throws the
// exact text and leaves nothing changed.
#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "platform/acl/IpFilter.h"
#include "platform/acl/MacFilter.h"
#include "platform/fennel/AclVlanIdOrNone.h"
#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/ModId.h"
#include "platform/pylon/U10.h"
#include "platform/pylon/VlanId.h"
#include "tests/platform/vocab/VocabTestUtil.h"

namespace {

struct RangedCase {
   const char* name;
   // Builds or sets the value and returns what then stands.
   std::function<S64( S64 )> set;
   std::optional<S64> firstBadBelow;  // none when nothing lies below
   S64 min;
   S64 max;
   S64 firstBadAbove;
   const char* text;
};

void PrintTo( const RangedCase& c, std::ostream* os ) {
   *os << c.name;
}

class RangedValueTest : public testing::TestWithParam<RangedCase> {};

TEST_P( RangedValueTest, EdgesStandAndBeyondThrowsExactText ) {
   const RangedCase& c = GetParam();
   EXPECT_EQ( c.min, c.set( c.min ) );
   EXPECT_EQ( c.max, c.set( c.max ) );
   if ( c.firstBadBelow ) {
      VocabTest::expectThrowText<Vesper::RangeException>( [&] { c.set( *c.firstBadBelow ); },
                                                          c.text );
   }
   VocabTest::expectThrowText<Vesper::RangeException>( [&] { c.set( c.firstBadAbove ); }, c.text );
}

// Filters: a failed set leaves the match flag off; a good one turns it on.
template <class Filter, class Set, class Get, class Match>
std::function<S64( S64 )> filterSetter( Set set, Get get, Match match ) {
   return [=]( S64 v ) {
      Filter f;
      try {
         set( f, v );
      } catch ( ... ) {
         EXPECT_FALSE( match( f ) );
         throw;
      }
      EXPECT_TRUE( match( f ) );
      return S64( get( f ) );
   };
}

#define FILTER_SETTER( Filter, attr, Attr )                                 \
   filterSetter<Filter>( []( Filter& f, S64 v ) { f.attr##Is( v ); },       \
                         []( const Filter& f ) { return S64( f.attr() ); }, \
                         []( const Filter& f ) { return f.match##Attr(); } )

INSTANTIATE_TEST_SUITE_P(
    Vocabulary, RangedValueTest,
    testing::Values(
        RangedCase{ "VlanId", []( S64 v ) { return S64( Pylon::VlanId( v ).value() ); }, 0, 1, 4094,
                    4095, "VlanId::value < 1 or > 4094 not allowed" },
        RangedCase{ "U10", []( S64 v ) { return S64( Pylon::U10( v ).value() ); }, -1, 0, 0x3ff,
                    0x400, "U10::value < 0 or > 0x03ff not allowed" },
        RangedCase{ "ModId", []( S64 v ) { return S64( Pylon::ModId( v ).value() ); }, -1, 0,
                    Pylon::ModId::null, 256,
                    "ModId::value < ModId::min or > ModId::null not allowed" },
        RangedCase{ "Ip6PrefixLen", []( S64 v ) { return S64( Pylon::Ip6PrefixLen( v ).value() ); },
                    -1, 0, Pylon::Ip6PrefixLen::invalid, 130,
                    "Ip6PrefixLen::value < Ip6PrefixLen::min or > Ip6PrefixLen::invalid not "
                    "allowed" },
        RangedCase{ "AclVlanIdOrNone",
                    []( S64 v ) { return S64( Fennel::AclVlanIdOrNone( U64( v ) ).value() ); },
                    std::nullopt, 0, 4095, 4096,
                    "AclVlanIdOrNone::value > AclVlanIdOrNone::vlanSharingId not allowed" },
        RangedCase{ "Vni", FILTER_SETTER( Acl::IpFilter, vni, Vni ), -1, 0, 16777215, 16777216,
                    "IpFilterBase::vni < 0 or > 16777215 not allowed" },
        RangedCase{ "Tni", FILTER_SETTER( Acl::Ip6Filter, tni, Tni ), -1, 0, 16777215, 16777216,
                    "IpFilterBase::tni < 0 or > 16777215 not allowed" },
        RangedCase{ "MplsLabel", FILTER_SETTER( Acl::MacFilter, mplsLabel, MplsLabel ), -1, 0,
                    0xFFFFF, 0x100000, "MacFilter::mplsLabel < 0 or > 0xFFFFF not allowed" },
        RangedCase{ "MplsInnerLabel",
                    FILTER_SETTER( Acl::MacFilter, mplsInnerLabel, MplsInnerLabel ), -1, 0, 0xFFFFF,
                    0x100000, "MacFilter::mplsInnerLabel < 0 or > 0xFFFFF not allowed" } ),
    []( const testing::TestParamInfo<RangedCase>& info ) { return info.param.name; } );

TEST( RangedValueTextTest, ParsedOutOfRangeIsARangeError ) {
   VocabTest::expectThrowText<Vesper::RangeException>(
       [] { Pylon::strepToValue<Pylon::VlanId>( "4095" ); },
       "VlanId::value < 1 or > 4094 not allowed" );
   VocabTest::expectThrowText<Vesper::RangeException>(
       [] { Fennel::strepToValue<Fennel::AclVlanIdOrNone>( "5000" ); },
       "AclVlanIdOrNone::value > AclVlanIdOrNone::vlanSharingId not allowed" );
   EXPECT_EQ( Pylon::VlanId( 100 ), Pylon::strepToValue<Pylon::VlanId>( "100" ) );
   EXPECT_THROW( Pylon::strepToValue<Pylon::U10>( "ten" ), Vesper::ParseException );
}

TEST( RangedValueDefaultsTest, DefaultsAreInsideTheirRanges ) {
   EXPECT_EQ( 1, Pylon::VlanId().value() );
   EXPECT_TRUE( Pylon::ModId().isNull() );
   EXPECT_TRUE( Fennel::AclVlanIdOrNone().isNone() );
   EXPECT_TRUE( Fennel::AclVlanIdOrNone( 4095 ).isShared() );
}

}  // namespace
