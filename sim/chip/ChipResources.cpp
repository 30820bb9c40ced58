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

std::optional<U32> RangeCheckers::create( const RangeChecker& def ) {
   const auto id = IdPool<RangeChecker>::create( def );
   liveRebuild();
   return id;
}

Status RangeCheckers::createWithId( U32 id, const RangeChecker& def ) {
   const Status s = IdPool<RangeChecker>::createWithId( id, def );
   liveRebuild();
   return s;
}

Status RangeCheckers::destroy( U32 id ) {
   const Status s = IdPool<RangeChecker>::destroy( id );
   liveRebuild();
   return s;
}

void RangeCheckers::liveRebuild() {
   live_.clear();
   forEach( [&]( U32 id, const RangeChecker& c ) {
      live_.push_back( Live{ c.min, U64( c.max ) - c.min, static_cast<U8>( id - 1 ),
                             static_cast<U8>( c.type ) } );
   } );
}

UdfChunks::UdfChunks( U32 capacity ) : IdPool<UdfChunk>( capacity ) {
   if ( capacity > kMaxCapacity ) {
      throw Vesper::RangeException( "a chip of " + std::to_string( capacity ) +
                                    " UDF chunks exceeds the model's " +
                                    std::to_string( kMaxCapacity ) );
   }
}

}  // namespace Sim
