// A rule's match on packet payload: up to eight 32-bit words, each at an
// offset counted in 32-bit words from a start point, with a pattern and a
// mask.
//
// The start is `headerStart` (1): offsets count from the first byte of the
// ACL's own header (the IP header for IP ACLs, the Ethernet header for MAC
// ACLs); or `headerEnd` (0): from the first byte after it. The default
// PayloadSpec (start 0, no words) means no payload match; a spec is
// compared with it to tell whether a rule has one.
//
// payloadSpecToValue expands a spec into a caller's array, as the SDK-facing
// code wants it.
#pragma once

#include <string>
#include <vector>

#include "platform/vesper/Enum.h"
#include "platform/vesper/Types.h"

namespace Acl {

enum class PayloadStart : U32 { headerEnd = 0, headerStart = 1 };

inline constexpr Vesper::EnumName<PayloadStart> payloadStartNames[] = {
    { PayloadStart::headerEnd, "headerEnd" }, { PayloadStart::headerStart, "headerStart" } };
constexpr Vesper::EnumNames<PayloadStart> vesperEnumNames( PayloadStart ) {
   return { "Acl::PayloadStart", payloadStartNames };
}

struct PayloadValue {
   U32 offset = 0;  // in 32-bit words from the start point
   U32 pattern = 0;
   U32 mask = 0;

   friend bool operator==( const PayloadValue&, const PayloadValue& ) = default;
};

class PayloadSpec {
 public:
   static constexpr std::size_t maxValues = 8;

   PayloadSpec() = default;
   // Throws Vesper::RangeException
   // "PayloadSpec::values > 8 not allowed" for more than maxValues words.
   PayloadSpec( PayloadStart start, std::vector<PayloadValue> values );

   PayloadStart start() const { return start_; }
   const std::vector<PayloadValue>& values() const { return values_; }

   friend bool operator==( const PayloadSpec&, const PayloadSpec& ) = default;

 private:
   PayloadStart start_ = PayloadStart::headerEnd;
   std::vector<PayloadValue> values_;
};

// Copies the words of `spec` into out[ 0 .. capacity ), in order, and
// returns how many it copied: all of them unless capacity is smaller.
unsigned long payloadSpecToValue( PayloadValue* out, unsigned long capacity,
                                  const PayloadSpec& spec );

// "headerStart 1/0x12345678/0xffffffff 2/0x0/0xff", for traces.
std::string valueToStrep( const PayloadSpec& spec );
std::ostream& operator<<( std::ostream& os, const PayloadSpec& spec );

}  // namespace Acl
