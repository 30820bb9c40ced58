#include "sim/chip/ChipResources.h"

#include <string>

#include "platform/vesper/Exception.h"

namespace Sim {

RangeCheckers::RangeCheckers( U32 capacity ) : IdPool<RangeChecker>( capacity ) {
   if ( capacity > kMaxCapacity ) {
      throw Vesper::RangeException( "a chip of " + std::to_string( capacity ) +
                                    " range checkers exceeds the model's " +
                                    std::to_string( kMaxCapacity ) );
   }
}

UdfChunks::UdfChunks( U32 capacity ) : IdPool<UdfChunk>( capacity ) {
   if ( capacity > kMaxCapacity ) {
      throw Vesper::RangeException( "a chip of " + std::to_string( capacity ) +
                                    " UDF chunks exceeds the model's " +
                                    std::to_string( kMaxCapacity ) );
   }
}

}  // namespace Sim
