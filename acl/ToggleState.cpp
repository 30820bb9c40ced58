#include "acl/ToggleState.h"

#include <map>
#include <mutex>
#include <string>

namespace Halyard {

namespace {

struct ToggleTable {
   std::mutex mutex;
   std::map<std::string, bool, std::less<> > set;
   std::map<std::string, bool, std::less<> > once;
};

// Never destroyed: a toggle may be read from the destructors of other
// process-wide objects.
ToggleTable& table() {
   static ToggleTable* t = new ToggleTable;
   return *t;
}

bool lookup( const ToggleTable& t, std::string_view name, bool defaultValue ) {
   const auto it = t.set.find( name );
   return it == t.set.end() ? defaultValue : it->second;
}

}  // namespace

bool getToggleState( std::string_view name, bool defaultValue ) {
   ToggleTable& t = table();
   std::lock_guard<std::mutex> hold( t.mutex );
   return lookup( t, name, defaultValue );
}

void toggleStateIs( std::string_view name, bool value ) {
   ToggleTable& t = table();
   std::lock_guard<std::mutex> hold( t.mutex );
   t.set.insert_or_assign( std::string( name ), value );
}

void toggleStateDel( std::string_view name ) {
   ToggleTable& t = table();
   std::lock_guard<std::mutex> hold( t.mutex );
   if ( const auto it = t.set.find( name ); it != t.set.end() ) {
      t.set.erase( it );
   }
}

bool toggleStateOnce( std::string_view name, bool defaultValue ) {
   ToggleTable& t = table();
   {
      std::lock_guard<std::mutex> hold( t.mutex );
      if ( const auto it = t.once.find( name ); it != t.once.end() ) {
         return it->second;
      }
   }
   const bool value = getToggleState( name, defaultValue );
   std::lock_guard<std::mutex> hold( t.mutex );
   // A racing first reader may have kept its answer meanwhile: that one stands.
   return t.once.emplace( std::string( name ), value ).first->second;
}

void ToggleTestAccess::onceCacheClear() {
   ToggleTable& t = table();
   std::lock_guard<std::mutex> hold( t.mutex );
   t.once.clear();
}

}  // namespace Halyard
