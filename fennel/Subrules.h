// Splitting an IPv4 or IPv6 rule into the subrules that the back-end programs one at a time.
//
// The back-end takes one source port term, one destination port term and one IP length term per
// subrule (createIpAclSubrule), each as four 16-bit values: a value under a mask, and a range
// from start to end. So a rule becomes the product of its three term lists:
//   any            one term that matches everything: (0, 0, 0, 0)
//   eq P1 P2 ...   one term per value: (P, 0xFFFF, P, P)
//   range L H      one range term (0, 0, L, H), which needs a range checker; or, when the range
//   gt / lt / neq  is one aligned block, the block as value and mask (B, M, first, last), which
//                  does not. gt P is [P+1, 65535], lt P is [0, P-1], neq P1 ... the ranges
//                  between the values (neq 80 is [0, 79] and [81, 65535]).
// With RangeForm::blocks every port range becomes its aligned blocks (PortBlocks.h), one term
// each, so that no port term needs a checker; the IP length has no masked qualifier on the chip,
// so its ranges and even its exact values always need a checker.
//
// Subrules are in the order: source terms outermost, then destination, then length; within a
// term list in rising value. A term list that admits no value (gt 65535, lt 0) gives no subrule
// at all: the rule can match no packet.
#pragma once

#include <vector>

#include "fennel/PortBlocks.h"
#include "platform/acl/FieldTerm.h"
#include "platform/acl/IpFilter.h"
#include "platform/vesper/Types.h"

namespace Fennel {

// One term of a subrule, in the back-end's four values.
struct SubruleTerm {
   U16 value = 0;
   U16 mask = 0;
   U16 start = 0;
   U16 end = 0;

   static SubruleTerm any() { return {}; }
   static SubruleTerm exact( U16 v ) { return { v, 0xFFFF, v, v }; }
   static SubruleTerm block( PortBlock b ) { return { b.value, b.mask, b.first(), b.last() }; }
   static SubruleTerm range( U16 low, U16 high ) { return { 0, 0, low, high }; }

   // The back-end asks a range checker for a port term exactly when this holds.
   bool needsRangeChecker() const { return mask == 0 && start != end; }

   friend bool operator==( const SubruleTerm&, const SubruleTerm& ) = default;
};

struct Subrule {
   SubruleTerm src;
   SubruleTerm dst;
   SubruleTerm len;

   friend bool operator==( const Subrule&, const Subrule& ) = default;
};

// How port ranges that are not one aligned block are handed down.
enum class RangeForm : U8 {
   checker,  // one range term, served by a range checker
   blocks,   // the fewest aligned blocks, one subrule term each
};

// The port terms of a field term. Exposed for the tests and for the cost of expansion.
std::vector<SubruleTerm> portTerms( const Acl::FieldTerm& term, RangeForm form );
// The IP length terms of a field term.
std::vector<SubruleTerm> lengthTerms( const Acl::FieldTerm& term );

struct RuleSplit {
   // Empty when no packet can meet the rule's port or length terms.
   std::vector<Subrule> subrules;
   // The rule tests layer 4 fields (port terms, TCP flags, ICMP type): it may only match
   // unfragmented packets and first fragments, and a permit gets a fragment rule (IPv4).
   bool l4Rule = false;
   // Some port term needs a range checker (only with RangeForm::checker).
   bool portRangeTerms = false;
};

RuleSplit splitIpRule( const Acl::IpFilterBase& filter, RangeForm form );

// Whether a rule tests layer 4 fields, as splitIpRule says in l4Rule.
bool hasLayer4Terms( const Acl::IpFilterBase& filter );

}  // namespace Fennel
