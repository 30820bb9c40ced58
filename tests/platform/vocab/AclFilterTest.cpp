// Rule configuration: filters, their terms, payload specs, the typed views
// of a rule, and unique ids.
#include <gtest/gtest.h>

#include <set>

#include "platform/acl/RuleConfig.h"
#include "tests/platform/vocab/VocabTestUtil.h"

namespace {

using namespace Acl;

TEST( FieldTermTest, MatchesAtTheEdgesOfEachOperator ) {
   EXPECT_TRUE( FieldTerm::eq( { 80, 443 } ).matches( 443 ) );
   EXPECT_FALSE( FieldTerm::eq( { 80, 443 } ).matches( 81 ) );
   EXPECT_FALSE( FieldTerm::neq( { 22 } ).matches( 22 ) );
   EXPECT_FALSE( FieldTerm::gt( 1023 ).matches( 1023 ) );
   EXPECT_TRUE( FieldTerm::gt( 1023 ).matches( 1024 ) );
   EXPECT_TRUE( FieldTerm::lt( 1024 ).matches( 1023 ) );
   EXPECT_FALSE( FieldTerm::lt( 1024 ).matches( 1024 ) );
   EXPECT_TRUE( FieldTerm::range( 10, 20 ).matches( 10 ) );
   EXPECT_FALSE( FieldTerm::range( 10, 20 ).matches( 21 ) );
   EXPECT_TRUE( FieldTerm().matches( 0 ) );
}

TEST( FieldTermTest, TextRoundTripsAndRejectsWrongArity ) {
   for ( const char* text :
         { "any", "eq 80 443", "neq 22", "gt 1023", "lt 1024", "range 1000 2000", "eq 0 65535" } ) {
      EXPECT_EQ( text, valueToStrep( strepToValue<FieldTerm>( text ) ) );
   }
   for ( const char* text :
         { "", "eq", "gt 1 2", "range 6 5", "any 1", "eq 65536", "le 5", "eq 80 " } ) {
      EXPECT_ANY_THROW( strepToValue<FieldTerm>( text ) ) << text;
   }
}

TEST( PayloadSpecTest, DefaultMeansNoPayloadAndExpandsToNothing ) {
   PayloadSpec none;
   EXPECT_EQ( PayloadStart::headerEnd, none.start() );
   PayloadValue out[8] = {};
   EXPECT_EQ( 0ul, payloadSpecToValue( out, 8, none ) );
   // A start alone, without words, is a different spec that still expands
   // to nothing.
   PayloadSpec startOnly( PayloadStart::headerStart, {} );
   EXPECT_NE( none, startOnly );
   EXPECT_EQ( 0ul, payloadSpecToValue( out, 8, startOnly ) );
}

TEST( PayloadSpecTest, ExpandsInOrderUpToTheCallersCapacity ) {
   std::vector<PayloadValue> words;
   for ( U32 i = 0; i < PayloadSpec::maxValues; ++i ) {
      words.push_back( { i, 0x11111111 * i, 0xFFFF0000 } );
   }
   PayloadSpec spec( PayloadStart::headerStart, words );
   PayloadValue out[8] = {};
   EXPECT_EQ( 8ul, payloadSpecToValue( out, 8, spec ) );
   for ( std::size_t i = 0; i < 8; ++i ) {
      EXPECT_EQ( words[i], out[i] );
   }
   PayloadValue small[3] = {};
   EXPECT_EQ( 3ul, payloadSpecToValue( small, 3, spec ) );
   EXPECT_EQ( words[2], small[2] );
   words.push_back( {} );
   VocabTest::expectThrowText<Vesper::RangeException>(
       [&] { PayloadSpec( PayloadStart::headerEnd, words ); },
       "PayloadSpec::values > 8 not allowed" );
   EXPECT_EQ( "headerStart 0/0x0/0xffff0000 1/0x11111111/0xffff0000",
              valueToStrep( PayloadSpec( PayloadStart::headerStart,
                                         { words.begin(), words.begin() + 2 } ) ) );
}

TEST( Ip6FilterTest, PrefixFormFollowsTheFullMask ) {
   Ip6Filter f;
   f.sourceIs( Pylon::strepToValue<Pylon::Ip6AddrWithMask>( "2001:db8::/48" ) );
   EXPECT_EQ( 48, f.source().len().value() );
   EXPECT_EQ( Pylon::Ip6PrefixLen( 48 ), f.sourceFullMask().prefixLen() );
   EXPECT_EQ( "2001:db8::/ffff:ffff:ffff::", valueToStrep( f.sourceFullMask() ) );

   auto holed = Pylon::strepToValue<Pylon::Ip6AddrWithFullMask>( "2001:db8::1/ffff::ffff" );
   f.destinationIs( holed );
   EXPECT_EQ( holed, f.destinationFullMask() );
   // No prefix: the prefix form says length 0, the full form invalid, and
   // the two lengths differ.
   EXPECT_EQ( Pylon::Ip6PrefixLen( 0 ), f.destination().len() );
   EXPECT_TRUE( f.destinationFullMask().prefixLen().isInvalid() );
   EXPECT_EQ( holed.address(), f.destination().address() );
}

TEST( RuleConfigDeathTest, AskingForAnotherTypesFilterStops ) {
   GTEST_FLAG_SET( death_test_style, "threadsafe" );
   RuleConfig ipRule;
   EXPECT_DEATH( ipRule.macFilter(), "Assertion `aclType\\(\\) == Acl::mac\\(\\)' failed" );
   RuleConfig macRule{ MacRuleConfig() };
   EXPECT_DEATH( macRule.ipFilter(), "Assertion `aclType\\(\\) == Acl::ip\\(\\)' failed" );
}

TEST( UniqueIdTest, NextNeverRepeatsNorMeetsConfiguredIds ) {
   std::set<UniqueId> seen;
   for ( int i = 0; i < 100; ++i ) {
      UniqueId id = UniqueId::next();
      EXPECT_FALSE( id.isEmpty() );
      EXPECT_NE( 0u, id.value() & UniqueId::generatedBit );
      EXPECT_TRUE( seen.insert( id ).second );
   }
}

}  // namespace
