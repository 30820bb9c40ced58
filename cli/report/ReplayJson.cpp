// The JSON-lines form of a replay: one object per packet in input order, then the summary.
#include <nlohmann/json.hpp>

#include "cli/report/ReplayReport.h"
#include "platform/vesper/Enum.h"

namespace HalyardCli {

namespace {

using Json = nlohmann::ordered_json;

const char* verdictText( bool permit ) {
   return permit ? "permit" : "deny";
}

Json hitJson( const AclHit& hit ) {
   Json j;
   j["name"] = hit.key.aclName();
   j["direction"] = Vesper::stringValue( hit.key.direction() );
   // The closing rule and the neighbour discovery permits have no sequence number.
   j["rule"] = hit.origin.kind == Fennel::RuleOrigin::Kind::configured ? Json( hit.origin.seq )
                                                                       : Json( nullptr );
   return j;
}

class JsonWriter : public ReplayWriter {
 public:
   JsonWriter( std::ostream& out, std::ostream& err, bool check )
       : out_( out ), err_( err ), check_( check ) {}

   void packet( const PacketOutcome& o ) override {
      Json j;
      j["packet"] = o.number;
      j["verdict"] = verdictText( o.hardware.permit );
      j["acls"] = Json::array();
      for ( const AclHit& hit : o.hardware.hits ) {
         j["acls"].push_back( hitJson( hit ) );
      }
      if ( check_ && o.reference ) {
         j["reference"] = verdictText( o.reference->permit );
         j["agree"] = o.agree;
      }
      j["egress"] = o.hardware.egress;
      j["cpu"] = o.hardware.cpu;
      out_ << j.dump() << "\n";
      if ( !o.agree ) {
         err_ << "halyard-acl: replay: packet " << o.number << ": " << o.difference << "\n";
      }
   }

   void finish( const ReplayTotals& t, const Fennel::GenericAclSm& ) override {
      Json summary;
      summary["packets"] = t.packets;
      summary["permit"] = t.permit;
      summary["deny"] = t.deny;
      summary["disagree"] = t.disagree;
      out_ << Json{ { "summary", summary } }.dump() << "\n";
   }

 private:
   std::ostream& out_;
   std::ostream& err_;
   bool check_;
};

}  // namespace

std::unique_ptr<ReplayWriter> replayJsonWriter( std::ostream& out, std::ostream& err, bool check ) {
   return std::make_unique<JsonWriter>( out, err, check );
}

}  // namespace HalyardCli
