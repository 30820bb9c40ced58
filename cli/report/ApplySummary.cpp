// Reading the summary of `apply` from the switch: the generic layer's state of each ACL, the
// back-end's records per unit (HalyardView.h) and the simulated managers' use of each unit.
#include "cli/report/ApplySummary.h"

#include <algorithm>

#include "cli/switch/ConfigChange.h"
#include "fennel/HalyardView.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "platform/vesper/Enum.h"

namespace HalyardCli {

namespace {

// Why an ACL does not stand on a unit: the generic layer's reason when it has one, else the
// chip's error that the back-end published, else what the records say.
std::optional<std::string> errorOnUnit( const Fennel::AclState& acl,
                                        const Fennel::AclUnitView* view,
                                        Fennel::AclCreateError chipError ) {
   const bool stands = view && view->installed && !view->dirty;
   if ( stands && acl.committed ) {
      return std::nullopt;
   }
   if ( !acl.errorText.empty() ) {
      return acl.errorText;
   }
   if ( view && view->dirty && chipError != Fennel::aclCreateSuccess ) {
      return createErrorText( chipError );
   }
   return std::string( view ? "not installed" : "not programmed on this unit" );
}

AclOnUnit aclOnUnit( const Fennel::AclState& acl, const std::vector<Fennel::AclUnitView>& views,
                     U32 unit, Fennel::AclCreateError chipError ) {
   AclOnUnit line;
   line.name = acl.key.aclName();
   line.type = acl.key.aclType();
   line.direction = acl.key.direction();
   line.vlan = acl.key.vlanId().value();
   const auto view = std::ranges::find( views, unit, &Fennel::AclUnitView::unit );
   const Fennel::AclUnitView* found = view == views.end() ? nullptr : &*view;
   if ( found ) {
      line.installed = found->installed;
      line.dirty = found->dirty;
      line.entries = found->entries;
   }
   line.error = errorOnUnit( acl, found, chipError );
   for ( const auto& [seq, expanded] : acl.expanded ) {
      line.expanded.push_back( seq );
   }
   return line;
}

void readTcam( const Sim::SimSwitch& sim, U32 unit, UnitSummary& out ) {
   const Sim::UnitUsage usage = sim.tcamUsage( unit );
   for ( const Sim::GroupUsage& g : usage.groups ) {
      GroupOnUnit group;
      group.name = Vesper::stringValue( g.assignment );
      group.assignment = static_cast<U32>( g.assignment );
      group.stage = std::string( Sim::stageName( g.stage ) );
      group.wide = g.wide;
      group.used = g.used;
      group.capacity = g.capacity;
      group.slices = g.slices;
      out.groups.push_back( group );
   }
   for ( std::size_t s = 0; s < usage.stages.size(); ++s ) {
      if ( usage.stages[s].slices != 0 ) {
         out.stages.push_back( StageSlices{ std::string( Sim::stageName( Sim::Stage( s ) ) ),
                                            usage.stages[s].slices, usage.stages[s].freeSlices } );
      }
   }
   out.rangeCheckersUsed = usage.rangeCheckersUsed;
   out.rangeCheckerCapacity = usage.rangeCheckerCapacity;
}

}  // namespace

std::string createErrorText( Fennel::AclCreateError error ) {
   switch ( error ) {
      case Fennel::aclCreateSuccess:
         return "success";
      case Fennel::aclCreateNoEntries:
         return "no TCAM entries";
      case Fennel::aclCreateNoRangeChecker:
         return "no range checker";
      case Fennel::aclCreateUdfError:
         return "payload (UDF) programming failed";
      case Fennel::aclCreateNotExpressible:
         return "not expressible in the ACL's key";
   }
   return "error " + std::to_string( static_cast<U32>( error ) );
}

bool ApplySummary::allStand() const {
   return std::ranges::all_of( units, []( const UnitSummary& u ) {
      return std::ranges::all_of( u.acls, &AclOnUnit::stands );
   } );
}

ApplySummary summarize( const AclSwitch& sw ) {
   ApplySummary summary;
   const Sim::SimSwitch& sim = sw.simSwitch();
   const Halyard::AclHelper& helper = sw.helper();
   summary.switchName = sim.profile().name();
   for ( U32 unit : sim.units() ) {
      UnitSummary u;
      u.unit = unit;
      u.chip = sim.chipKind( unit ).name;
      const Vesper::Name chipName =
          helper.hcsd()->halyardModId( static_cast<U16>( unit ) ).chipName();
      for ( const auto& [key, acl] : sw.machine().acls() ) {
         u.acls.push_back( aclOnUnit( acl, Fennel::aclUnits( helper, key ), unit,
                                      helper.unitError( chipName ) ) );
      }
      readTcam( sim, unit, u );
      if ( const auto classes = helper.halyardIntfClassData( unit ) ) {
         u.freeClasses = static_cast<U32>( classes->freeAclIntfClass().size() );
      }
      summary.units.push_back( std::move( u ) );
   }
   for ( const auto& [key, acl] : sw.machine().acls() ) {
      for ( const auto& [seq, expanded] : acl.expanded ) {
         summary.expanded.push_back( ExpandedSummary{ instanceName( key ), seq, expanded.subrules,
                                                      expanded.rangeSubrules } );
      }
   }
   summary.bindingErrors = sw.machine().bindingErrors();
   return summary;
}

}  // namespace HalyardCli
