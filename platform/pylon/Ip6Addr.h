// IPv6 addresses, prefix lengths, and an address with a mask in its two
// forms.
//
// Bytes are in wire order: byte 0 is the most significant. The SDK's IPv6
// qualifiers take the 16 bytes in this order.
//
// Ip6PrefixLen holds 0 to 128, plus one marker value, `invalid` (129): the
// prefix length of a mask that is not a plain prefix. Invariant:
// min <= value() <= invalid; construction outside it throws
// Vesper::RangeException
// "Ip6PrefixLen::value < Ip6PrefixLen::min or > Ip6PrefixLen::invalid not allowed".
//
// Text: RFC 5952 ("2001:db8::1", lower case, the longest run of zero groups
// shortened); the parser takes any RFC 4291 form, including a trailing
// dotted IPv4 part. "2001:db8::/32" for Ip6AddrWithMask;
// "2001:db8::/ffff:ffff::" for Ip6AddrWithFullMask, whose parser also takes
// "/32". Bad text throws Vesper::ParseException.
#pragma once

#include <array>
#include <compare>
#include <string>
#include <string_view>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace Pylon {

class Ip6Addr {
 public:
   static constexpr std::size_t size = 16;
   using Bytes = std::array<U8, size>;

   constexpr Ip6Addr() = default;
   constexpr explicit Ip6Addr( const Bytes& bytes ) : bytes_( bytes ) {}

   // REQUIRES: i < size.
   constexpr U8 byte( std::size_t i ) const { return bytes_[i]; }
   constexpr void byteIs( std::size_t i, U8 value ) { bytes_[i] = value; }
   constexpr const Bytes& bytes() const { return bytes_; }
   constexpr bool isZero() const { return bytes_ == Bytes{}; }
   U32 hash() const;

   friend constexpr bool operator==( const Ip6Addr&, const Ip6Addr& ) = default;
   friend constexpr auto operator<=>( const Ip6Addr&, const Ip6Addr& ) = default;

 private:
   Bytes bytes_{};
};

class Ip6PrefixLen {
 public:
   static constexpr U8 min = 0;
   static constexpr U8 max = 128;
   static constexpr U8 invalid = 129;

   constexpr Ip6PrefixLen() = default;
   explicit Ip6PrefixLen( S64 value );

   constexpr U8 value() const { return value_; }
   constexpr bool isInvalid() const { return value_ == invalid; }
   U32 hash() const;

   friend constexpr bool operator==( Ip6PrefixLen, Ip6PrefixLen ) = default;
   friend constexpr auto operator<=>( Ip6PrefixLen, Ip6PrefixLen ) = default;

 private:
   U8 value_ = 0;
};

// The mask of a prefix length: len / 8 bytes of 0xFF, then the remaining
// bits at the top of the next byte. The invalid length has no prefix mask;
// it gives the full mask, all 128 bits.
Ip6Addr ip6PrefixMask( Ip6PrefixLen len );

// An address with a prefix length.
class Ip6AddrWithMask {
 public:
   constexpr Ip6AddrWithMask() = default;
   constexpr Ip6AddrWithMask( const Ip6Addr& address, Ip6PrefixLen len )
       : address_( address ), len_( len ) {}

   constexpr const Ip6Addr& address() const { return address_; }
   constexpr Ip6PrefixLen len() const { return len_; }
   Ip6Addr mask() const { return ip6PrefixMask( len_ ); }
   U32 hash() const;

   friend constexpr bool operator==( const Ip6AddrWithMask&, const Ip6AddrWithMask& ) = default;
   friend constexpr auto operator<=>( const Ip6AddrWithMask&, const Ip6AddrWithMask& ) = default;

 private:
   Ip6Addr address_;
   Ip6PrefixLen len_;
};

// An address with an arbitrary 128-bit mask.
class Ip6AddrWithFullMask {
 public:
   constexpr Ip6AddrWithFullMask() = default;
   constexpr Ip6AddrWithFullMask( const Ip6Addr& address, const Ip6Addr& mask )
       : address_( address ), mask_( mask ) {}
   explicit Ip6AddrWithFullMask( const Ip6AddrWithMask& prefix )
       : address_( prefix.address() ), mask_( prefix.mask() ) {}

   constexpr const Ip6Addr& address() const { return address_; }
   constexpr const Ip6Addr& mask() const { return mask_; }
   // The number of leading one bits when the mask is a plain prefix
   // (ones, then only zeros); otherwise Ip6PrefixLen::invalid.
   Ip6PrefixLen prefixLen() const;
   U32 hash() const;

   friend constexpr bool operator==( const Ip6AddrWithFullMask&,
                                     const Ip6AddrWithFullMask& ) = default;
   friend constexpr auto operator<=>( const Ip6AddrWithFullMask&,
                                      const Ip6AddrWithFullMask& ) = default;

 private:
   Ip6Addr address_;
   Ip6Addr mask_;
};

std::string valueToStrep( const Ip6Addr& addr );
std::string valueToStrep( Ip6PrefixLen len );
std::string valueToStrep( const Ip6AddrWithMask& addr );
std::string valueToStrep( const Ip6AddrWithFullMask& addr );
Ip6Addr parseStrep( std::string_view text, ValueType<Ip6Addr> );
Ip6PrefixLen parseStrep( std::string_view text, ValueType<Ip6PrefixLen> );
Ip6AddrWithMask parseStrep( std::string_view text, ValueType<Ip6AddrWithMask> );
Ip6AddrWithFullMask parseStrep( std::string_view text, ValueType<Ip6AddrWithFullMask> );
std::ostream& operator<<( std::ostream& os, const Ip6Addr& addr );
std::ostream& operator<<( std::ostream& os, Ip6PrefixLen len );
std::ostream& operator<<( std::ostream& os, const Ip6AddrWithMask& addr );
std::ostream& operator<<( std::ostream& os, const Ip6AddrWithFullMask& addr );

}  // namespace Pylon
