// Two small pieces shared by the records of platform/tcam and platform/status,
// which follow the accessor pattern of the object runtime: a setter notifies
// only on a real change, and xDelAll() removes "one by one, in iteration
// order", notifying for each member.
#pragma once

#include <utility>

namespace HalyardStatus {

// Stores `value` in `field`; true when that changed the field.
template <class T, class V>
bool assignIfChanged( T& field, V&& value ) {
   if ( field == value ) {
      return false;
   }
   field = std::forward<V>( value );
   return true;
}

// Empties `map` member by member through the owner's delete accessor `del`,
// which notifies. Each key is copied before its delete, since the member
// (and its key) is gone afterwards; the map's cursor survives the deletion of
// its current member.
// REQUIRES: `del( key )` removes `key` from `map`.
template <class Map, class Del>
void delAllThrough( const Map& map, Del&& del ) {
   for ( auto it = map.iterator(); auto* node = it.currNodeNonStale(); it.advance() ) {
      const auto key = node->key();
      del( key );
   }
}

}  // namespace HalyardStatus
