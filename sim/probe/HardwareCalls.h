// Sim::HardwareCallObserver: one process-wide listener told of every call into the simulated
// hardware, so that a test can look at the chips between any two calls of the back-end.
//
// Who tells it: the simulated SDK's call gate at the top of every operation, and the TCAM
// managers whenever an operation reaches a unit. A call is heard before it acts, so what the
// observer sees at a call is the hardware as the calls before it left it; the observer's owner
// looks once more when its window closes, and so sees the state after every call.
//
// Contract:
//   1. At most one observer at a time; callObserverIs( nullptr ) stops the telling.
//   2. The observer must not call the simulated SDK or the managers: it reads chip models only.
//   3. Single-threaded, like the SDK calls it listens to.
#pragma once

#include <string_view>

namespace Sim {

class HardwareCallObserver {
 public:
   virtual ~HardwareCallObserver() = default;
   // `call` names the call about to run: an SDK operation, or "TCAM manager".
   virtual void beforeHardwareCall( std::string_view call ) = 0;
};

namespace detail {
inline HardwareCallObserver* hardwareCallObserver = nullptr;
}

inline void hardwareCallObserverIs( HardwareCallObserver* observer ) {
   detail::hardwareCallObserver = observer;
}
inline HardwareCallObserver* hardwareCallObserver() {
   return detail::hardwareCallObserver;
}
inline void hardwareCallSeen( std::string_view call ) {
   if ( detail::hardwareCallObserver ) {
      detail::hardwareCallObserver->beforeHardwareCall( call );
   }
}

}  // namespace Sim
