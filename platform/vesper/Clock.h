// The agent's clock, as one counted object that its users share.
//
// now() is monotonic: it never goes backward and does not follow changes of
// the wall clock, so differences of two readings are elapsed times. The
// origin is arbitrary. A subclass may stand in for it (a clock that a test
// moves by hand); the object runtime's users only read it.
//
// Threads: any.
#pragma once

#include "platform/vesper/Ptr.h"

namespace Vesper {

class Clock : public PtrInterface {
   VESPER_FWK_TYPE( "Vesper::Clock" )

 public:
   using Ptr = Vesper::Ptr<Clock>;
   using PtrConst = Vesper::Ptr<const Clock>;

   Clock() = default;

   // Seconds since the clock's origin.
   virtual double now() const;
};

// A new clock on the process's monotonic time, with notifications on.
Clock::Ptr clockFactory();

}  // namespace Vesper
