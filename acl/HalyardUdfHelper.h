// The small functions of payload matching through user-defined fields (UDFs): 2-byte windows
// of the packet that the chip extracts at an offset from a header, and that the entry managers
// allocate and name by qualifier ids. AclHelper::programUdfData (HalyardAclSmUdf.cpp) turns a
// rule's payload into UDF qualifiers with these.
//
// Contract:
//  1. getUdfBase knows exactly six pairs of ACL type and payload start; any other stops the
//     process by assertion (on "0"), after a trace naming the type.
//  2. setUdfDataAndMask and getUdfDataAndMask call the SDK directly: they run inside the
//     bracket of an SDK form (SdkCall.h), which the caller gives. The chip decides the form:
//     where its attributes have udfAltFormA or udfAltFormB, the UDF calls (length before the
//     buffers), else the data-qualifier calls (length last). The chip type must have a row
//     in the chip table (fatal otherwise).
//
// REQUIRES: the activity thread; Shim::sdk_ installed.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/acl/PayloadSpec.h"
#include "platform/halyard/UdfData.h"
#include "platform/tcam/ChipInfo.h"
#include "platform/vesper/Types.h"

namespace Halyard {

// The header a payload's offsets count from. IPv4 and IPv6 (types 0 and 1): the IP header
// for a payload that starts at the header (udfOffsetBaseL3Header), the first byte after it
// otherwise (udfOffsetBaseL3Payload). MAC (type 2): the Ethernet header, or the first byte
// after it.
UdfOffsetBase getUdfBase( const Acl::PayloadSpec& payload, int aclType );

// Writes `length` bytes of data and mask of the UDF qualifier `qualId` on the entry; the
// SDK's return code.
int setUdfDataAndMask( int unit, int entry, int qualId, uint8_t* data, uint8_t* mask, U16 length,
                       const HalyardCentral::ChipInfo& chipInfo );
// Reads at most `length` bytes of them back, and their length into `*actualLength`; the SDK's
// return code (its not-found code when the entry has no data for the qualifier).
int getUdfDataAndMask( int unit, int entry, int qualId, U16 length, uint8_t* data, uint8_t* mask,
                       U16* actualLength, const HalyardCentral::ChipInfo& chipInfo );

// Traces `name`, " programmed: 0x" and the bytes in hexadecimal, two digits each.
void payloadTraceHelper( const U8* bytes, U8 length, std::string_view name );

}  // namespace Halyard
