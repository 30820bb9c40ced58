// Options that IP and MAC rules share: payload words and VLAN terms.
#include <algorithm>

#include "cli/config/RuleReader.h"

namespace HalyardCli::ConfigText {

namespace {

// The payload offset counts 32-bit words; the back-end addresses its bytes with 8 bits, so the
// last word that it can reach starts at byte 252.
constexpr U64 kMaxPayloadOffset = 63;

Acl::PayloadValue readPayloadWord( std::string_view word ) {
   const std::size_t a = word.find( '/' );
   const std::size_t b = a == std::string_view::npos ? a : word.find( '/', a + 1 );
   if ( b == std::string_view::npos || word.find( '/', b + 1 ) != std::string_view::npos ) {
      fail( "payload word " + quoted( word ) + " is malformed: expected OFFSET/PATTERN/MASK" );
   }
   Acl::PayloadValue v;
   v.offset = static_cast<U32>(
       numberIn( word.substr( 0, a ), 0, kMaxPayloadOffset, "payload offset (32-bit words)" ) );
   v.pattern = static_cast<U32>(
       numberIn( word.substr( a + 1, b - a - 1 ), 0, 0xFFFFFFFF, "payload pattern" ) );
   v.mask = static_cast<U32>( numberIn( word.substr( b + 1 ), 0, 0xFFFFFFFF, "payload mask" ) );
   return v;
}

}  // namespace

void OptionSet::note( std::string_view option ) {
   if ( std::ranges::find( seen_, option ) != seen_.end() ) {
      fail( quoted( option ) + " given twice: expected each option once" );
   }
   seen_.push_back( option );
}

Acl::PayloadSpec readPayload( WordCursor& words ) {
   const Acl::PayloadStart start = words.takeIf( "header-start" ) ? Acl::PayloadStart::headerStart
                                                                  : Acl::PayloadStart::headerEnd;
   std::vector<Acl::PayloadValue> values;
   while ( !words.atEnd() && words.peek().find( '/' ) != std::string_view::npos ) {
      if ( values.size() == Acl::PayloadSpec::maxValues ) {
         fail( "more than 8 payload words: expected at most 8" );
      }
      values.push_back( readPayloadWord( words.take( "payload word", "OFFSET/PATTERN/MASK" ) ) );
   }
   if ( values.empty() ) {
      const std::string_view got = words.peek();
      fail( got.empty()
                ? std::string( "missing payload word: expected OFFSET/PATTERN/MASK" )
                : "unexpected " + quoted( got ) + ": expected a payload word OFFSET/PATTERN/MASK" );
   }
   return Acl::PayloadSpec( start, std::move( values ) );
}

void readVlan( WordCursor& words, std::string_view what, U16& vlan, U16& mask ) {
   const std::string name( what );
   vlan = static_cast<U16>(
       numberIn( words.take( name + " id", name + " ID MASK" ), 0, 4095, name + " id" ) );
   mask = static_cast<U16>(
       numberIn( words.take( name + " mask", "a mask 0 to 0xfff after the " + name + " id" ), 0,
                 0xFFF, name + " mask" ) );
}

}  // namespace HalyardCli::ConfigText
