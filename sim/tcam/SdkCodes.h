// Sim::SdkCodes: the few numbers of the SDK that the simulated TCAM managers answer with or
// are handed, gathered so that the managers stay independent of any particular SDK object.
//
// The managers do their hardware work on the chip models directly, as the closed managers of a
// real agent do theirs, yet their callers compare results with the SDK's own codes
// (Shim::Sdk::BCM_E_NOT_FOUND() and friends) and hand them SDK enumerators
// (bcm_field_IpType_t). Whoever assembles the switch takes the codes from its SDK with
// fromSdk(); current() does so from Shim::sdk_ when one is installed. The defaults stand for
// tests of the managers alone.
//
// Contract:
//   1. `none` is the code of success; every other code is negative and distinct.
//   2. `notInstalled` is what the hardware answers when an entry that is not in hardware is
//      enabled or disabled: the code the back-end hands enableEntry to tolerate
//      (Shim::Sdk::enableEntryToleratedCode()).
//   3. of( status ) turns a refusal of the chip model into the code the SDK would give.
#pragma once

#include <optional>

#include "platform/shim/BcmTypes.h"
#include "sim/chip/ChipTypes.h"

namespace Shim {
class Sdk;
}

namespace Sim {

struct SdkCodes {
   int none = 0;
   int notFound = -7;
   int resource = -14;
   int notInstalled = -12;
   // Any other refusal of the chip (a bad parameter, a busy or conflicting resource).
   int failure = -1;
   // The two IP types the back-end qualifies on; the defaults are the chip model's own numbers.
   int ipTypeIpv4Any = static_cast<int>( IpType::Ipv4Any );
   int ipTypeIpv6 = static_cast<int>( IpType::Ipv6 );

   // The codes of `sdk`.
   static SdkCodes fromSdk( Shim::Sdk& sdk );
   // The codes of Shim::sdk_ when one is installed, otherwise the defaults.
   static SdkCodes current();

   int of( Status s ) const;
   // The chip's IP type for an SDK enumerator; nullopt for one the back-end never uses.
   std::optional<IpType> ipType( bcm_field_IpType_t type ) const;
};

}  // namespace Sim
