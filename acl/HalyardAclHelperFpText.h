// Internal to HalyardAclHelper: the value texts of its "fp qual" and
// "fp action add" lines that Shim::FpHex does not give.
//
// Shapes, following the SDK shell: a plain value in decimal, then its mask
// as "0x" and upper-case hexadecimal ("IpProtocol 6 0xFF"); a port bitmap as
// "0x" and its eight 32-bit words, most significant word first, eight digits
// each, so that port 0 is the last digit.
#pragma once

#include <string>

#include "platform/shim/BcmTypes.h"
#include "platform/vesper/Types.h"

namespace Halyard {

// " 0x" and the mask, with the leading blank that separates it from the value.
std::string fpMaskText( U32 mask );

// "0x" and the bitmap's words.
std::string fpPbmpText( const bcm_pbmp_t& pbmp );

}  // namespace Halyard
