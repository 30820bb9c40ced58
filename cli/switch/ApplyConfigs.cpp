#include "cli/switch/ApplyConfigs.h"

#include "cli/switch/ConfigChange.h"

namespace HalyardCli {

bool programmable( const ConfigFiles& files, const std::string& command, std::ostream& err ) {
   for ( std::size_t i = 0; i < files.setups.size(); ++i ) {
      std::optional<std::string> why = unservedBinding( files.setups[i] );
      if ( !why && i > 0 ) {
         why = unsupportedChange( files.setups[i - 1], files.setups[i] );
         if ( why ) {
            *why = "as a change of " + files.paths[i - 1] + ": " + *why;
         }
      }
      if ( why ) {
         err << "halyard-acl: " << command << ": " << files.paths[i] << ": " << *why << "\n";
         return false;
      }
   }
   return true;
}

bool applyInTurn( AclSwitch& sw, const ConfigFiles& files, const std::string& command,
                  std::ostream& err, const std::function<void( std::size_t, U32 )>& beforePass ) {
   for ( std::size_t i = 0; i < files.setups.size(); ++i ) {
      if ( i > 0 ) {
         if ( const auto why = pendingReapply( sw.machine(), *files.setups[i].paramConfig ) ) {
            err << "halyard-acl: " << command << ": " << files.paths[i]
                << ": not applied as a change of " << files.paths[i - 1] << ": " << *why << "\n";
            return false;
         }
      }
      std::function<void( U32 )> hear;
      if ( beforePass ) {
         hear = [&beforePass, i]( U32 pass ) { beforePass( i, pass ); };
      }
      sw.apply( files.setups[i], hear );
   }
   return true;
}

}  // namespace HalyardCli
