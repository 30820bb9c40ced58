#include "sim/chip/Verdict.h"

#include <sstream>

namespace Sim {

std::optional<EntryId> Verdict::hitIn( GroupId g ) const {
   for ( const auto& h : hits ) {
      if ( h.group == g ) {
         return h.entry;
      }
   }
   return std::nullopt;
}

std::optional<EntryId> Verdict::hitIn( GroupId g, U32 egressPort ) const {
   for ( const auto& h : hits ) {
      if ( h.group == g && h.egressPort == egressPort ) {
         return h.entry;
      }
   }
   return std::nullopt;
}

namespace {

struct Opt {
   const std::optional<U32>& v;
};

std::ostream& operator<<( std::ostream& os, Opt o ) {
   if ( o.v ) {
      return os << *o.v;
   }
   return os << "-";
}

}  // namespace

std::string Verdict::text() const {
   std::ostringstream s;
   s << ( dropped ? "dropped" : ( forwarded() ? "forwarded" : "not forwarded" ) );
   if ( stpDiscarded ) {
      s << " stp-discarded";
   }
   s << " egress " << egressPorts.text();
   if ( egressDropped.any() ) {
      s << " egress-dropped " << egressDropped.text();
   }
   s << ( copyToCpu ? " cpu yes" : " cpu no" ) << " queue " << Opt{ cpuQueue } << " match "
     << Opt{ cpuMatchId } << " prio " << Opt{ internalPriority } << " mirror " << Opt{ mirror }
     << " class " << sourceClass << " hits [";
   const char* sep = "";
   for ( const auto& h : hits ) {
      s << sep << stageName( h.stage ) << ":" << h.group << "=" << h.entry;
      if ( h.egressPort ) {
         s << "@" << *h.egressPort;
      }
      sep = " ";
   }
   s << "]";
   return s.str();
}

}  // namespace Sim
