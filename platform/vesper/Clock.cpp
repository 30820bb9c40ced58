#include "platform/vesper/Clock.h"

#include <chrono>

namespace Vesper {

double Clock::now() const {
   using Seconds = std::chrono::duration<double>;
   return std::chrono::duration_cast<Seconds>( std::chrono::steady_clock::now().time_since_epoch() )
       .count();
}

Clock::Ptr clockFactory() {
   Clock::Ptr clock( new Clock );
   clock->hasNotificationActiveIs( true );
   return clock;
}

}  // namespace Vesper
