// The JSON form of the apply summary, key for key as the tool's users read it:
//   {"units":[{"unit":0, "chip":"trident3",
//              "acls":[{"name", "type", "direction", "installed", "dirty", "error", "entries",
//                       "expanded"}],
//              "groups":[{"name", "stage", "used", "capacity"}],
//              "rangeCheckers":{"used", "capacity"}, "freeClasses"}]}
#include "cli/report/ApplySummary.h"
#include "platform/vesper/Enum.h"

namespace HalyardCli {

namespace {

using Json = nlohmann::ordered_json;

Json aclJson( const AclOnUnit& acl ) {
   Json j;
   j["name"] = acl.name;
   j["type"] = Vesper::stringValue( acl.type );
   j["direction"] = Vesper::stringValue( acl.direction );
   j["installed"] = acl.installed;
   j["dirty"] = acl.dirty;
   j["error"] = acl.error ? Json( *acl.error ) : Json( nullptr );
   j["entries"] = acl.entries;
   j["expanded"] = acl.expanded;
   return j;
}

Json groupJson( const GroupOnUnit& group ) {
   Json j;
   j["name"] = group.name;
   j["stage"] = group.stage;
   j["used"] = group.used;
   j["capacity"] = group.capacity;
   return j;
}

Json unitJson( const UnitSummary& unit ) {
   Json j;
   j["unit"] = unit.unit;
   j["chip"] = unit.chip;
   j["acls"] = Json::array();
   for ( const AclOnUnit& acl : unit.acls ) {
      j["acls"].push_back( aclJson( acl ) );
   }
   j["groups"] = Json::array();
   for ( const GroupOnUnit& group : unit.groups ) {
      j["groups"].push_back( groupJson( group ) );
   }
   j["rangeCheckers"] =
       Json{ { "used", unit.rangeCheckersUsed }, { "capacity", unit.rangeCheckerCapacity } };
   j["freeClasses"] = unit.freeClasses;
   return j;
}

}  // namespace

nlohmann::ordered_json applyJson( const ApplySummary& summary ) {
   Json j;
   j["units"] = Json::array();
   for ( const UnitSummary& unit : summary.units ) {
      j["units"].push_back( unitJson( unit ) );
   }
   return j;
}

}  // namespace HalyardCli
