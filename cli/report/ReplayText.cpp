// The text form of a replay.
#include <iomanip>
#include <sstream>

#include "cli/report/ReplayReport.h"
#include "platform/vesper/Enum.h"

namespace HalyardCli {

namespace {

// Hits-per-rule lines are wrapped at this width.
constexpr std::size_t kLineWidth = 96;

std::string hitsText( const std::vector<AclHit>& hits ) {
   std::string text;
   for ( const AclHit& hit : hits ) {
      text += ( text.empty() ? "" : "; " ) + hit.key.aclName() + " " +
              Vesper::stringValue( hit.key.direction() ) + ": " + originText( hit.origin );
   }
   return text.empty() ? "-" : text;
}

std::string egressText( const std::vector<std::string>& egress ) {
   std::string text;
   for ( const std::string& intf : egress ) {
      text += ( text.empty() ? "" : "," ) + intf;
   }
   return text.empty() ? "-" : text;
}

std::string aclTitle( const Fennel::AclKey& key ) {
   std::string text = Vesper::stringValue( key.aclType() ) + " access-list " + key.aclName() + " " +
                      Vesper::stringValue( key.direction() );
   if ( key.vlanId().value() != 0 ) {
      text += " on Vlan" + std::to_string( key.vlanId().value() );
   }
   return text;
}

// "10: 2, 20: 1, closing rule: 3", wrapped under a four-blank indent.
void writeRuleHits( const RuleHits& hits, std::ostream& out ) {
   std::vector<std::string> items;
   for ( const auto& [seq, n] : hits.bySeq ) {
      items.push_back( std::to_string( seq ) + ": " + std::to_string( n ) );
   }
   if ( hits.neighborDiscovery ) {
      items.push_back( "neighbour discovery: " + std::to_string( hits.neighborDiscovery ) );
   }
   if ( hits.closing ) {
      items.push_back( "closing rule: " + std::to_string( hits.closing ) );
   }
   std::string line = "   ";
   for ( std::size_t i = 0; i < items.size(); ++i ) {
      const std::string item = " " + items[i] + ( i + 1 < items.size() ? "," : "" );
      if ( line.size() + item.size() > kLineWidth && line.size() > 3 ) {
         out << line << "\n";
         line = "   ";
      }
      line += item;
   }
   out << line << "\n";
}

class TextWriter : public ReplayWriter {
 public:
   TextWriter( std::ostream& out, bool check ) : out_( out ), check_( check ) {
      out_ << "packet  verdict  egress        cpu  " << ( check_ ? "check   " : "" )
           << "rule hit per ACL\n";
   }

   void packet( const PacketOutcome& o ) override {
      const HardwareAnswer& hw = o.hardware;
      out_ << std::setw( 6 ) << o.number << "  " << std::left << std::setw( 7 )
           << ( hw.permit ? "permit" : "deny" ) << "  " << std::setw( 12 )
           << egressText( hw.egress ) << "  " << std::setw( 3 ) << ( hw.cpu ? "yes" : "no" )
           << "  ";
      if ( check_ ) {
         out_ << std::setw( 6 ) << ( o.agree ? "agrees" : "DIFFERS" ) << "  ";
      }
      out_ << std::right << hitsText( hw.hits ) << "\n";
      if ( !o.agree ) {
         out_ << "        packet " << o.number << ": " << o.difference << "\n";
      }
   }

   void finish( const ReplayTotals& t, const Fennel::GenericAclSm& machine ) override {
      out_ << "\n"
           << t.packets << " packets: " << t.permit << " permitted, " << t.deny << " denied, "
           << t.cpu << " copied to the CPU\n";
      if ( check_ ) {
         writeCheck( t );
      }
      out_ << "hits per rule:\n";
      for ( const auto& [key, acl] : machine.acls() ) {
         const auto hits = t.hits.find( key );
         U32 configured = 0;
         for ( const Fennel::RuleOrigin& r : acl.rules ) {
            configured += r.kind == Fennel::RuleOrigin::Kind::configured ? 1 : 0;
         }
         const std::size_t hitRules = hits == t.hits.end() ? 0 : hits->second.bySeq.size();
         out_ << "  " << aclTitle( key ) << ": " << hitRules << " of " << configured
              << " rules hit\n";
         if ( hits != t.hits.end() ) {
            writeRuleHits( hits->second, out_ );
         }
      }
   }

 private:
   void writeCheck( const ReplayTotals& t ) {
      if ( t.disagree == 0 ) {
         out_ << "check: every packet agrees with the reference evaluator\n";
         return;
      }
      out_ << "check: " << t.disagree << " of " << t.packets
           << " packets differ from the reference evaluator: packet";
      for ( std::size_t i = 0; i < t.differing.size(); ++i ) {
         out_ << ( i ? ", " : " " ) << t.differing[i];
      }
      out_ << ( t.differing.size() < t.disagree ? ", ..." : "" ) << "\n";
   }

   std::ostream& out_;
   bool check_;
};

}  // namespace

std::unique_ptr<ReplayWriter> replayTextWriter( std::ostream& out, bool check ) {
   return std::make_unique<TextWriter>( out, check );
}

}  // namespace HalyardCli
