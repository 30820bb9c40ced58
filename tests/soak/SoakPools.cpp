#include "tests/soak/SoakPools.h"

#include <sstream>

#include "tests/support/DrivenAcl.h"

namespace Soak {

std::string poolsText( const HalyardCli::AclSwitch& sw ) {
   std::ostringstream out;
   const Halyard::AclHelper& helper = sw.helper();
   out << HalyardTest::poolsText( sw.simSwitch(), helper );
   out << "ACL records " << helper.halyardAclData().size() << "\n";
   for ( const auto& member : helper.halyardAclData() ) {
      out << " record " << member.key() << "\n";
   }
   out << "dirty ACLs " << helper.dirtyAcl().size() << "\n";
   out << "generic layer ACLs " << sw.machine().acls().size() << "\n";
   return out.str();
}

}  // namespace Soak
