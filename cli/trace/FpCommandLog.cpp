#include "cli/trace/FpCommandLog.h"

#include <charconv>
#include <cstdio>

namespace HalyardCli {

namespace {

constexpr std::string_view kHandle = "Halyard::bcmFpCmd";
constexpr std::string_view kVerbs[] = { "fp qual ", "fp action add ", "fp entry install " };

}  // namespace

std::optional<U64> fpCommandEntry( std::string_view line ) {
   for ( std::string_view verb : kVerbs ) {
      if ( line.substr( 0, verb.size() ) != verb ) {
         continue;
      }
      const std::string_view rest = line.substr( verb.size() );
      U64 entry = 0;
      const auto [end, ec] = std::from_chars( rest.data(), rest.data() + rest.size(), entry );
      if ( ec == std::errc() && end != rest.data() ) {
         return entry;
      }
   }
   return std::nullopt;
}

FpCommandLog::FpCommandLog( const Sim::SimSwitch& sim )
    : sim_( sim ), wasOn_( Halyard::bcmFpCmd.enabled( 0 ) ) {
   Vesper::traceSinkIs( [this]( const Vesper::TraceHandle& handle, int level,
                                std::string_view line ) { take( handle, level, line ); } );
   Vesper::traceLevelIs( kHandle, 0, true );
}

FpCommandLog::~FpCommandLog() {
   if ( !wasOn_ ) {
      Vesper::traceLevelIs( kHandle, 0, false );
   }
   Vesper::traceSinkIs( {} );
}

void FpCommandLog::noteIs( const std::string& note ) {
   for ( U32 unit : sim_.units() ) {
      lines_.push_back( Line{ unit, note, true } );
   }
}

void FpCommandLog::take( const Vesper::TraceHandle& handle, int level, std::string_view line ) {
   const std::optional<U64> entry =
       handle.name() == kHandle ? fpCommandEntry( line ) : std::nullopt;
   if ( !entry ) {
      // What the default sink writes.
      std::fprintf( stderr, "%s/%d: %.*s\n", handle.name().c_str(), level, int( line.size() ),
                    line.data() );
      return;
   }
   lines_.push_back( Line{ unitOf( *entry ), std::string( line ) } );
}

U32 FpCommandLog::unitOf( U64 entry ) {
   std::optional<U32> changed;
   std::optional<U32> holder;
   for ( U32 unit : sim_.units() ) {
      const std::optional<std::string> dump =
          sim_.chip( unit ).entryDump( static_cast<Sim::EntryId>( entry ) );
      if ( !dump ) {
         continue;
      }
      if ( !holder || unit == lastUnit_ ) {
         holder = unit;
      }
      std::string& seen = seen_[{ unit, entry }];
      if ( seen != *dump ) {
         seen = *dump;
         if ( !changed || unit == lastUnit_ ) {
            changed = unit;
         }
      }
   }
   const U32 unit = changed.value_or( holder.value_or( lastUnit_.value_or( 0 ) ) );
   lastUnit_ = unit;
   return unit;
}

}  // namespace HalyardCli
