#include "tests/support/ProcessState.h"

#include <cstdlib>

#include "acl/HalyardAclSmBringupInternal.h"
#include "acl/ToggleState.h"

namespace HalyardTest {

namespace {

void clean() {
   unsetenv( "SIMULATION_VMID" );
   Halyard::toggleStateDel( Halyard::mirrorOnDropToggle );
   Halyard::ToggleTestAccess::onceCacheClear();
}

}  // namespace

CleanProcessState::CleanProcessState() {
   clean();
}

CleanProcessState::~CleanProcessState() {
   clean();
}

void CleanProcessState::simulationVmidIs( const char* value ) {
   setenv( "SIMULATION_VMID", value, 1 );
}

void CleanProcessState::mirrorOnDropIs( bool on ) {
   Halyard::toggleStateIs( Halyard::mirrorOnDropToggle, on );
   Halyard::ToggleTestAccess::onceCacheClear();
}

}  // namespace HalyardTest
