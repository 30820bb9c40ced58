// The switch SDK's value types that cross the Shim::Sdk interface.
//
// They keep the SDK's own names so that call sites read as the SDK is
// written. What they are not: compile-time numbers. Every enumerator or
// return code of the SDK is fetched from Shim::sdk_ at the moment it is
// needed (see Sdk.h), so the types below that stand for SDK enumerations have
// no enumerators at all. Each is a distinct enumeration type over `int`: a
// value can only come from an accessor of the SDK (or from an explicit cast
// in an implementation of it), and one kind cannot be passed where another is
// expected, while it still converts to `int` for traces and comparisons.
//
// Data conventions of the interface:
//  - a unit is the chip number, an `int` on the SDK's side;
//  - an entry is a field-processor entry id; the library keeps it as U64 and
//    passes its low 32 bits (bcm_field_entry_t);
//  - IPv4 addresses and masks are U32 in host byte order;
//  - IPv6 addresses and masks are 16 bytes in network order, the first byte
//    the most significant; MAC addresses and masks are 6 bytes.
#pragma once

#include <cstddef>

#include "platform/vesper/Types.h"

// Handles and plain numbers of the SDK.
using bcm_field_entry_t = U32;  // low 32 bits of the library's U64 entry
using bcm_field_range_t = U32;  // a range checker id
using bcm_port_t = int;
using bcm_module_t = int;  // -1 addresses every module
using bcm_ip_t = U32;      // host order
using bcm_ip6_t = U8[16];
using bcm_mac_t = U8[6];

// Enumerations of the SDK; values only from the accessors of Shim::Sdk.
enum bcm_field_action_t : int {};
enum bcm_field_IpFrag_t : int {};
enum bcm_field_IpType_t : int {};
enum bcm_port_class_t : int {};
enum bcm_port_control_t : int {};
enum bcm_stg_stp_t : int {};
enum bcm_range_type_t : int {};
// Chip table access: a table (memory) id and a field id of its rows.
enum soc_mem_t : int {};
enum soc_field_t : int {};

namespace Shim {

// The SDK's port bitmap: bit p of word p / 32 stands for port p. It holds
// every port number of the 10-bit port field (0 to 1023), so that the port
// 1023 that stands for an unknown interface can go into a mask. The ports of
// a chip lie in the first tracedWordCount words, which is what the
// field-processor command lines show. A value type, copied whole. (Named
// after the SDK's structure; it lives in this namespace because a leading
// underscore is reserved at global scope.)
struct _shr_pbmp {
   static constexpr int wordBits = 32;
   static constexpr int wordCount = 32;
   static constexpr int portCount = wordBits * wordCount;
   static constexpr int tracedWordCount = 8;

   U32 pbits[wordCount] = {};

   bool operator==( const _shr_pbmp& ) const = default;

   void clear();
   bool isNull() const;
   // REQUIRES: 0 <= port < portCount; otherwise Vesper::RangeException.
   bool member( int port ) const;
   void portAdd( int port );
   void portRemove( int port );
   int count() const;
};

}  // namespace Shim

using bcm_pbmp_t = Shim::_shr_pbmp;

// The SDK's record of one range checker, read back by bcm_range_get. A
// default record is all zero; the SDK's initialiser (bcm_range_config_t_init)
// clears it in the SDK's own way before `rid_is` names the checker to read.
struct bcm_range_config_s {
   bcm_range_config_s() = default;

   unsigned int rid() const { return rid_; }
   bcm_range_type_t rtype() const { return rtype_; }
   int min() const { return min_; }
   int max() const { return max_; }

   void rid_is( unsigned int rid ) { rid_ = rid; }
   // Filled by the SDK when it answers.
   void rtypeIs( bcm_range_type_t rtype ) { rtype_ = rtype; }
   void minIs( int min ) { min_ = min; }
   void maxIs( int max ) { max_ = max; }

 private:
   unsigned int rid_ = 0;
   bcm_range_type_t rtype_{};
   int min_ = 0;
   int max_ = 0;
};

// One row of the chip's port table and of its L-port table, as raw words.
// The layout belongs to the SDK: the library only clears a row, reads it,
// sets one field through the SDK and writes it back.
struct port_tab_entry_s {
   static constexpr std::size_t wordCount = 16;
   U32 entry_data[wordCount] = {};
};

struct lport_tab_entry_s {
   static constexpr std::size_t wordCount = 16;
   U32 entry_data[wordCount] = {};
};
