// The numbers of the simulated SDK build, and their translation to the chip model's own names.
//
// The library never compiles an SDK number in: it fetches every enumerator and return code
// from Shim::sdk_ when it needs one. These are the values that the simulated SDK answers
// with. They are deliberately not the chip model's own numbering (an IpFrag or an action
// means different numbers on each side), so that a value that skips the translation shows up
// as a wrong verdict or a refused call rather than passing by luck.
//
// Contract:
//   1. Every value here is distinct within its kind; the translations are exact inverses on
//      the values listed.
//   2. A translation from an SDK value that is not listed answers nullopt: the caller turns it
//      into kParam.
//   3. errorText answers a constant string for every code, "Unknown error" for unlisted ones.
#pragma once

#include <optional>

#include "platform/shim/BcmTypes.h"
#include "platform/vesper/Types.h"
#include "sim/chip/ChipTypes.h"

namespace Sim::SdkValues {

// ---- Return codes.
inline constexpr int kNone = 0;
inline constexpr int kInternal = -1;
inline constexpr int kMemory = -2;
inline constexpr int kUnit = -3;  // no chip on that unit
inline constexpr int kParam = -4;
inline constexpr int kEmpty = -5;
inline constexpr int kFull = -6;
inline constexpr int kNotFound = -7;
inline constexpr int kExists = -8;
inline constexpr int kTimeout = -9;
inline constexpr int kBusy = -10;
inline constexpr int kFail = -11;
inline constexpr int kDisabled = -12;  // the entry is not in hardware
inline constexpr int kBadId = -13;
inline constexpr int kResource = -14;
inline constexpr int kConfig = -15;  // two actions of the entry exclude each other
inline constexpr int kUnavail = -16;
inline constexpr int kInit = -17;
inline constexpr int kPort = -18;  // no such port on the unit

// The text of a return code; never null.
const char* errorText( int rc );

// The code of a chip model status.
int codeOf( Status s );

// Flags of the older range checker read (bcm_field_range_get).
inline constexpr U32 kRangeFlagSrcPort = 0x1;
inline constexpr U32 kRangeFlagDstPort = 0x2;
inline constexpr U32 kRangeFlagPacketLength = 0x100;
U32 rangeFlagsOf( RangeType t );

// ---- Enumerators, and their translations.
bcm_field_action_t sdkAction( ActionId a );
std::optional<ActionId> actionOf( bcm_field_action_t a );

bcm_field_IpFrag_t sdkIpFrag( IpFrag f );
std::optional<IpFrag> ipFragOf( bcm_field_IpFrag_t f );

bcm_field_IpType_t sdkIpType( IpType t );
std::optional<IpType> ipTypeOf( bcm_field_IpType_t t );

bcm_stg_stp_t sdkStpState( StpState s );
std::optional<StpState> stpStateOf( bcm_stg_stp_t s );

bcm_range_type_t sdkRangeType( RangeType t );
std::optional<RangeType> rangeTypeOf( bcm_range_type_t t );

bcm_port_class_t sdkPortClass( PortClassKind k );
std::optional<PortClassKind> portClassOf( bcm_port_class_t c );

// Port controls that the simulated chip keeps; any other is unavailable.
inline constexpr bcm_port_control_t kPortControlFilterEgress{ 71 };

// ---- Chip tables of the port-table functions.
inline constexpr soc_mem_t kPortTable{ 0x2a1 };
inline constexpr soc_mem_t kLPortTable{ 0x1d7 };
inline constexpr int kMemBlockAny = -1;
inline constexpr int kMemBlockAll = -2;
inline constexpr soc_field_t kUsePortTableGroupIdField{ 0x3e5 };

}  // namespace Sim::SdkValues
