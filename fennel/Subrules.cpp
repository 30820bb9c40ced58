#include "fennel/Subrules.h"

#include <algorithm>

namespace Fennel {

namespace {

using Acl::FieldOp;
using Acl::FieldTerm;

// The inclusive ranges a field term admits; `any` is the whole field, an eq list its values.
std::vector<PortRange> admittedRanges( const FieldTerm& term ) {
   const std::vector<U16>& v = term.values();
   switch ( term.op() ) {
      case FieldOp::any:
         return { PortRange{ 0, 0xFFFF } };
      case FieldOp::eq: {
         std::vector<U16> sorted = v;
         std::sort( sorted.begin(), sorted.end() );
         sorted.erase( std::unique( sorted.begin(), sorted.end() ), sorted.end() );
         std::vector<PortRange> out;
         for ( U16 p : sorted ) {
            out.push_back( PortRange{ p, p } );
         }
         return out;
      }
      case FieldOp::neq:
         return complementRanges( v );
      case FieldOp::gt:
         if ( v[0] == 0xFFFF ) {
            return {};
         }
         return { PortRange{ static_cast<U16>( v[0] + 1 ), 0xFFFF } };
      case FieldOp::lt:
         if ( v[0] == 0 ) {
            return {};
         }
         return { PortRange{ 0, static_cast<U16>( v[0] - 1 ) } };
      case FieldOp::range:
         return { PortRange{ v[0], v[1] } };
   }
   return {};
}

}  // namespace

std::vector<SubruleTerm> portTerms( const FieldTerm& term, RangeForm form ) {
   if ( term.isAny() ) {
      return { SubruleTerm::any() };
   }
   std::vector<SubruleTerm> out;
   for ( const PortRange& r : admittedRanges( term ) ) {
      if ( r.low == r.high ) {
         out.push_back( SubruleTerm::exact( r.low ) );
      } else if ( auto block = singleBlock( r.low, r.high ) ) {
         // The whole field is the block with mask 0, which is no term at all.
         out.push_back( block->mask == 0 ? SubruleTerm::any() : SubruleTerm::block( *block ) );
      } else if ( form == RangeForm::blocks ) {
         for ( const PortBlock& b : rangeBlocks( r.low, r.high ) ) {
            out.push_back( SubruleTerm::block( b ) );
         }
      } else {
         out.push_back( SubruleTerm::range( r.low, r.high ) );
      }
   }
   return out;
}

std::vector<SubruleTerm> lengthTerms( const FieldTerm& term ) {
   if ( term.isAny() ) {
      return { SubruleTerm::any() };
   }
   std::vector<SubruleTerm> out;
   for ( const PortRange& r : admittedRanges( term ) ) {
      if ( r.low == 0 && r.high == 0xFFFF ) {
         out.push_back( SubruleTerm::any() );
      } else if ( r.low == r.high ) {
         out.push_back( SubruleTerm::exact( r.low ) );
      } else {
         out.push_back( SubruleTerm::range( r.low, r.high ) );
      }
   }
   return out;
}

bool hasLayer4Terms( const Acl::IpFilterBase& filter ) {
   const bool icmp = filter.proto() == 1 || filter.proto() == 58;
   return !filter.srcPort().isAny() || !filter.dstPort().isAny() || filter.tcpFlags() != 0 ||
          ( icmp && filter.icmpType() != Acl::icmpAny );
}

RuleSplit splitIpRule( const Acl::IpFilterBase& filter, RangeForm form ) {
   RuleSplit split;
   split.l4Rule = hasLayer4Terms( filter );
   const auto src = portTerms( filter.srcPort(), form );
   const auto dst = portTerms( filter.dstPort(), form );
   const auto len = lengthTerms( filter.ipLength() );
   for ( const SubruleTerm& s : src ) {
      for ( const SubruleTerm& d : dst ) {
         for ( const SubruleTerm& l : len ) {
            split.subrules.push_back( Subrule{ s, d, l } );
         }
      }
   }
   split.portRangeTerms = std::ranges::any_of( split.subrules, []( const Subrule& s ) {
      return s.src.needsRangeChecker() || s.dst.needsRangeChecker();
   } );
   return split;
}

}  // namespace Fennel
