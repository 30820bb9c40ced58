// HalyardAclTypeDirectionFeature: the key of the state machines.
#include <gtest/gtest.h>

#include <set>

#include "platform/halyard/HalyardAclTypeDirectionFeature.h"
#include "tests/platform/vocab/VocabTestUtil.h"

namespace {

using Halyard::HalyardAclFeature;
using Halyard::HalyardAclTypeDirectionFeature;
using Tdf = HalyardAclTypeDirectionFeature;

Tdf parse( std::string_view text ) {
   return Halyard::strepToValue<Tdf>( text );
}

// The expected hashes were computed apart from this code, in Python:
//   def oaat(bs):
//       h = 0
//       for b in bs: h = (h + b) & M; h = (h + (h << 10)) & M; h ^= h >> 6
//       h = (h + (h << 3)) & M; h ^= h >> 11; return (h + (h << 15)) & M
// over b''.join(w.to_bytes(4, 'little') for w in (type, direction, feature)),
// M = 0xffffffff. 'big' in place of 'little' gives the BE numbers.
struct PinnedHash {
   Tdf value;
   U32 hash;
};

TEST( HalyardAclTypeDirectionFeatureTest, HashIsOneAtATimeOverTwelveBytesLsbFirst ) {
   const PinnedHash pinned[] = {
       { Tdf( Acl::ip(), Acl::in(), Halyard::aclFeatureSecurity ), 0x0 },
       { Tdf( Acl::ip(), Acl::in(), Halyard::aclFeatureMirroring1 ), 0x009dbee6 },
       { Tdf( Acl::mac(), Acl::out(), Halyard::aclFeatureNone ), 0xa16063c7 },
       { Tdf( Acl::ipv6(), Acl::in(), Halyard::aclFeatureSecurity ), 0xce9cd198 },
       { Tdf( Acl::ip(), Acl::out(), HalyardAclFeature( 0x01020304 ) ), 0x72c528fc },
   };
   for ( const auto& p : pinned ) {
      EXPECT_EQ( p.hash, p.value.hash() ) << p.value;
   }
}

TEST( HalyardAclTypeDirectionFeatureTest, OrdersByTypeThenDirectionThenFeatureSigned ) {
   Tdf ipOutSecurity( Acl::ip(), Acl::out(), Halyard::aclFeatureSecurity );
   Tdf ipInNone( Acl::ip(), Acl::in(), Halyard::aclFeatureNone );
   Tdf ip6InSecurity( Acl::ipv6(), Acl::in(), Halyard::aclFeatureSecurity );
   EXPECT_LT( ipInNone, ipOutSecurity );       // direction before feature
   EXPECT_LT( ipOutSecurity, ip6InSecurity );  // type before direction
   // Signed comparison: a feature with the top bit set sorts below 0.
   Tdf negative( Acl::ip(), Acl::in(), HalyardAclFeature( 0x80000000u ) );
   EXPECT_LT( negative, Tdf( Acl::ip(), Acl::in(), Halyard::aclFeatureSecurity ) );
   Tdf negativeType( Acl::AclType( 0xFFFFFFFFu ), Acl::in(), Halyard::aclFeatureSecurity );
   EXPECT_LT( negativeType, ipInNone );
}

TEST( HalyardAclTypeDirectionFeatureTest, TextHasTheStatedForm ) {
   EXPECT_EQ(
       "Value('Halyard::HalyardAclTypeDirectionFeature', ** {'type': mac, 'direction': out, "
       "'feature': aclFeatureNone})",
       valueToStrep( Tdf( Acl::mac(), Acl::out(), Halyard::aclFeatureNone ) ) );
}

TEST( HalyardAclTypeDirectionFeatureTest, TextRoundTripsForEveryTypeDirectionFeature ) {
   for ( U32 type = 0; type <= 2; ++type ) {
      for ( U32 direction = 0; direction <= 1; ++direction ) {
         for ( U32 feature = 0; feature <= 8; ++feature ) {
            Tdf value{ Acl::AclType( type ), Acl::AclDirection( direction ),
                       HalyardAclFeature( feature ) };
            std::string text = valueToStrep( value );
            EXPECT_EQ( value, parse( text ) ) << text;
            EXPECT_EQ( text, valueToStrep( parse( text ) ) );
         }
      }
   }
}

class TdfBadTextTest : public testing::TestWithParam<std::tuple<std::string, std::string> > {};

// Each broken literal fails in parsing and the message quotes the literal.
TEST_P( TdfBadTextTest, FailsNamingWhatIsWrong ) {
   const std::string& text = std::get<0>( GetParam() );
   const std::string& expected = std::get<1>( GetParam() );
   std::string message = VocabTest::parseErrorText( [&] { parse( text ); } );
   EXPECT_NE( std::string::npos, message.find( expected ) ) << message;
}

const std::string good =
    "Value('Halyard::HalyardAclTypeDirectionFeature', ** {'type': ip, 'direction': in, "
    "'feature': aclFeatureSecurity})";

std::string replaced( std::string_view from, std::string_view to ) {
   std::string text = good;
   text.replace( text.find( from ), from.size(), to );
   return text;
}

INSTANTIATE_TEST_SUITE_P(
    Literals, TdfBadTextTest,
    testing::Values(
        std::tuple( replaced( "Value('Halyard::", "Value('Fennel::" ),
                    "expected \"Value('Halyard::HalyardAclTypeDirectionFeature', ** {\"" ),
        std::tuple( replaced( ", 'feature': ", ", 'Feature': " ), "expected \", 'feature': \"" ),
        std::tuple( replaced( "})", ", 'extra': 1})" ), "expected \"})\"" ),
        std::tuple( good + " ", "unexpected text after" ) ) );

INSTANTIATE_TEST_SUITE_P( Attributes, TdfBadTextTest,
                          testing::Values( std::tuple( replaced( "'type': ip", "'type': ip4" ),
                                                       "attribute \"type\" from 'ip4'" ),
                                           std::tuple( replaced( "'direction': in",
                                                                 "'direction': ingress" ),
                                                       "attribute \"direction\" from 'ingress'" ),
                                           std::tuple( replaced( "aclFeatureSecurity", "security" ),
                                                       "attribute \"feature\" from 'security'" ),
                                           std::tuple( replaced( "aclFeatureSecurity", "" ),
                                                       "attribute \"feature\" from ''" ) ) );

}  // namespace
