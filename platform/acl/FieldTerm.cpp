#include "platform/acl/FieldTerm.h"

#include <algorithm>

namespace Acl {

FieldTerm FieldTerm::eq( std::vector<U16> values ) {
   if ( values.empty() ) {
      throw Vesper::RangeException( "FieldTerm::eq without values not allowed" );
   }
   return FieldTerm( FieldOp::eq, std::move( values ) );
}

FieldTerm FieldTerm::neq( std::vector<U16> values ) {
   if ( values.empty() ) {
      throw Vesper::RangeException( "FieldTerm::neq without values not allowed" );
   }
   return FieldTerm( FieldOp::neq, std::move( values ) );
}

FieldTerm FieldTerm::gt( U16 value ) {
   return FieldTerm( FieldOp::gt, { value } );
}

FieldTerm FieldTerm::lt( U16 value ) {
   return FieldTerm( FieldOp::lt, { value } );
}

FieldTerm FieldTerm::range( U16 low, U16 high ) {
   if ( low > high ) {
      throw Vesper::RangeException( "FieldTerm::range low > high not allowed" );
   }
   return FieldTerm( FieldOp::range, { low, high } );
}

bool FieldTerm::matches( U16 value ) const {
   auto listed = [&] { return std::ranges::find( values_, value ) != values_.end(); };
   switch ( op_ ) {
      case FieldOp::any:
         return true;
      case FieldOp::eq:
         return listed();
      case FieldOp::neq:
         return !listed();
      case FieldOp::gt:
         return value > values_[0];
      case FieldOp::lt:
         return value < values_[0];
      case FieldOp::range:
         return value >= values_[0] && value <= values_[1];
   }
   return false;
}

std::string valueToStrep( const FieldTerm& term ) {
   std::string text = Vesper::stringValue( term.op() );
   for ( U16 v : term.values() ) {
      text += " " + std::to_string( v );
   }
   return text;
}

FieldTerm parseStrep( std::string_view text, Pylon::ValueType<FieldTerm> ) {
   std::vector<std::string_view> words;
   for ( std::size_t start = 0; start <= text.size(); ) {
      std::size_t space = std::min( text.find( ' ', start ), text.size() );
      words.push_back( text.substr( start, space - start ) );
      start = space + 1;
   }
   auto fail = [&]() -> FieldTerm {
      throw Vesper::ParseException( "'" + std::string( text ) +
                                    "' is not a field term: expected any, eq N..., neq N..., "
                                    "gt N, lt N or range N N" );
   };
   FieldOp op;
   try {
      op = Vesper::sequenceToValue<FieldOp>( words[0] );
   } catch ( const Vesper::ParseException& ) {
      return fail();
   }
   std::vector<U16> values;
   for ( std::size_t i = 1; i < words.size(); ++i ) {
      auto n = Pylon::parseUnsigned( words[i] );
      if ( !n || *n > 0xFFFF ) {
         return fail();
      }
      values.push_back( static_cast<U16>( *n ) );
   }
   std::size_t n = values.size();
   switch ( op ) {
      case FieldOp::any:
         return n == 0 ? FieldTerm() : fail();
      case FieldOp::eq:
         return n >= 1 ? FieldTerm::eq( values ) : fail();
      case FieldOp::neq:
         return n >= 1 ? FieldTerm::neq( values ) : fail();
      case FieldOp::gt:
         return n == 1 ? FieldTerm::gt( values[0] ) : fail();
      case FieldOp::lt:
         return n == 1 ? FieldTerm::lt( values[0] ) : fail();
      case FieldOp::range:
         return n == 2 ? FieldTerm::range( values[0], values[1] ) : fail();
   }
   return fail();
}

std::ostream& operator<<( std::ostream& os, const FieldTerm& term ) {
   return os << valueToStrep( term );
}

}  // namespace Acl
