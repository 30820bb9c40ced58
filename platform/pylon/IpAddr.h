// IPv4 addresses, and an address with a mask in its two forms.
//
// Byte order: value() is the address as a number in host order, so
// 10.0.0.1 is 0x0A000001 on every host; masks are numbers in the same order
// (a /8 mask is 0xFF000000). These are the forms the SDK's IPv4 qualifiers
// take, so value() goes to the SDK as it is: the byte swap that turns an
// address kept in network order into host order has already been done here.
// Code that holds an address in network order (the number whose bytes in
// memory are the wire bytes) converts with fromNetworkOrder() and
// valueNetworkOrder(). bytes() is the address in wire order.
//
// Text: "10.0.0.1"; "10.0.0.0/8" (IpAddrWithMask); "10.0.0.0/255.0.0.0"
// (IpAddrWithFullMask, whose parser also takes "/8"). Bad text throws
// Vesper::ParseException; a prefix length above 32 throws
// Vesper::RangeException "IpAddrWithMask::len > 32 not allowed".
#pragma once

#include <array>
#include <bit>
#include <compare>
#include <string>
#include <string_view>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace Pylon {

class IpAddr {
 public:
   constexpr IpAddr() = default;
   constexpr explicit IpAddr( U32 hostOrderValue ) : value_( hostOrderValue ) {}
   constexpr IpAddr( U8 a, U8 b, U8 c, U8 d )
       : value_( U32( a ) << 24 | U32( b ) << 16 | U32( c ) << 8 | d ) {}

   static constexpr IpAddr fromNetworkOrder( U32 networkOrderValue ) {
      return IpAddr( toOrFromNetworkOrder( networkOrderValue ) );
   }

   constexpr U32 value() const { return value_; }
   constexpr U32 valueNetworkOrder() const { return toOrFromNetworkOrder( value_ ); }
   constexpr std::array<U8, 4> bytes() const {
      return { U8( value_ >> 24 ), U8( value_ >> 16 ), U8( value_ >> 8 ), U8( value_ ) };
   }
   U32 hash() const;

   friend constexpr bool operator==( IpAddr, IpAddr ) = default;
   friend constexpr auto operator<=>( IpAddr, IpAddr ) = default;

 private:
   // A byte swap on little-endian hosts, nothing on big-endian ones.
   static constexpr U32 toOrFromNetworkOrder( U32 v ) {
      if constexpr ( std::endian::native == std::endian::big ) {
         return v;
      }
      return ( v >> 24 ) | ( v >> 8 & 0xFF00 ) | ( v << 8 & 0xFF0000 ) | ( v << 24 );
   }

   U32 value_ = 0;
};

// The mask of a prefix length; REQUIRES: len <= 32.
constexpr U32 ipPrefixMask( U8 len ) {
   return len == 0 ? 0 : ~U32( 0 ) << ( 32 - len );
}

// An address with a prefix length, 0 to 32.
class IpAddrWithMask {
 public:
   static constexpr U8 maxLen = 32;

   constexpr IpAddrWithMask() = default;
   IpAddrWithMask( IpAddr address, S64 len );

   constexpr IpAddr address() const { return address_; }
   constexpr U8 len() const { return len_; }
   constexpr U32 mask() const { return ipPrefixMask( len_ ); }
   U32 hash() const;

   friend constexpr bool operator==( const IpAddrWithMask&, const IpAddrWithMask& ) = default;
   friend constexpr auto operator<=>( const IpAddrWithMask&, const IpAddrWithMask& ) = default;

 private:
   IpAddr address_;
   U8 len_ = 0;
};

// An address with an arbitrary mask; a mask of 0 matches every address.
class IpAddrWithFullMask {
 public:
   constexpr IpAddrWithFullMask() = default;
   constexpr IpAddrWithFullMask( IpAddr address, U32 mask ) : address_( address ), mask_( mask ) {}
   constexpr explicit IpAddrWithFullMask( const IpAddrWithMask& prefix )
       : address_( prefix.address() ), mask_( prefix.mask() ) {}

   constexpr IpAddr address() const { return address_; }
   constexpr U32 mask() const { return mask_; }
   // Whether `addr` falls under this address and mask.
   constexpr bool contains( IpAddr addr ) const {
      return ( addr.value() & mask_ ) == ( address_.value() & mask_ );
   }
   U32 hash() const;

   friend constexpr bool operator==( const IpAddrWithFullMask&,
                                     const IpAddrWithFullMask& ) = default;
   friend constexpr auto operator<=>( const IpAddrWithFullMask&,
                                      const IpAddrWithFullMask& ) = default;

 private:
   IpAddr address_;
   U32 mask_ = 0;
};

std::string valueToStrep( IpAddr addr );
std::string valueToStrep( const IpAddrWithMask& addr );
std::string valueToStrep( const IpAddrWithFullMask& addr );
IpAddr parseStrep( std::string_view text, ValueType<IpAddr> );
IpAddrWithMask parseStrep( std::string_view text, ValueType<IpAddrWithMask> );
IpAddrWithFullMask parseStrep( std::string_view text, ValueType<IpAddrWithFullMask> );
std::ostream& operator<<( std::ostream& os, IpAddr addr );
std::ostream& operator<<( std::ostream& os, const IpAddrWithMask& addr );
std::ostream& operator<<( std::ostream& os, const IpAddrWithFullMask& addr );

}  // namespace Pylon
