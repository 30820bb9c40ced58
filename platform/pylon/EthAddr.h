// An Ethernet (MAC) address: six bytes, first byte first on the wire.
//
// Text: valueToStrep gives "00:11:22:33:44:55" (lower case); the parser also
// takes the dotted form "0011.2233.4455". Upper-case digits are accepted,
// and a group may drop its leading zeros ("0:1:2:3:4:5", "11.2233.4455").
// Anything else throws Vesper::ParseException.
#pragma once

#include <array>
#include <compare>
#include <string>
#include <string_view>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace Pylon {

class EthAddr {
 public:
   static constexpr std::size_t size = 6;
   using Bytes = std::array<U8, size>;

   constexpr EthAddr() = default;
   constexpr explicit EthAddr( const Bytes& bytes ) : bytes_( bytes ) {}
   constexpr EthAddr( U8 b0, U8 b1, U8 b2, U8 b3, U8 b4, U8 b5 )
       : bytes_{ b0, b1, b2, b3, b4, b5 } {}

   // REQUIRES: i < size.
   constexpr U8 byte( std::size_t i ) const { return bytes_[i]; }
   constexpr void byteIs( std::size_t i, U8 value ) { bytes_[i] = value; }
   constexpr const Bytes& bytes() const { return bytes_; }

   constexpr bool isZero() const { return bytes_ == Bytes{}; }
   // The group bit, the least significant bit of the first byte.
   constexpr bool isMulticast() const { return ( bytes_[0] & 1 ) != 0; }
   U32 hash() const;

   friend constexpr bool operator==( const EthAddr&, const EthAddr& ) = default;
   friend constexpr auto operator<=>( const EthAddr&, const EthAddr& ) = default;

 private:
   Bytes bytes_{};
};

std::string valueToStrep( const EthAddr& addr );
EthAddr parseStrep( std::string_view text, ValueType<EthAddr> );
std::ostream& operator<<( std::ostream& os, const EthAddr& addr );

}  // namespace Pylon
