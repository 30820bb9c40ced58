// Internal to HalyardAclHelper: the value texts of its "fp qual" and
// "fp action add" lines that Shim::FpHex does not give.
//
// Shapes, following the SDK shell: a plain value in decimal, then its mask
// as "0x" and upper-case hexadecimal ("IpProtocol 6 0xFF"); a port bitmap as
// "0x" and its eight 32-bit words, most significant word first, eight digits
// each, so that port 0 is the last digit.
//
// FpMask and FpPbmp are parts of a line (Shim::fpQual, Shim::fpActionAdd):
// they are formatted only when the line is written, so that programming an
// entry with the command trace off formats nothing.
#pragma once

#include <string>

#include "platform/shim/BcmTypes.h"
#include "platform/vesper/Types.h"

namespace Halyard {

// " 0x" and the mask, with the leading blank that separates it from the value.
struct FpMask {
   U32 mask;
};

// "0x" and the bitmap's words.
struct FpPbmp {
   bcm_pbmp_t pbmp;
};

void appendFpPart( std::string& line, FpMask mask );
void appendFpPart( std::string& line, const FpPbmp& pbmp );

// The text of FpPbmp on its own.
std::string fpPbmpText( const bcm_pbmp_t& pbmp );

}  // namespace Halyard
