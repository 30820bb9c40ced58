#include "cli/report/ReplayReport.h"

namespace HalyardCli {

void replayAll( Replayer& replayer, const std::vector<Fennel::Packet>& packets,
                ReplayWriter& writer, const Fennel::GenericAclSm& machine,
                const std::function<void( U32 )>& progress ) {
   for ( const Fennel::Packet& packet : packets ) {
      writer.packet( replayer.replay( packet ) );
      if ( progress ) {
         progress( replayer.totals().packets );
      }
   }
   writer.finish( replayer.totals(), machine );
}

}  // namespace HalyardCli
