// Uses the installed back-end as its developers do: the library's own headers and the ACL
// vocabulary of the platform. Prints one line that the install test checks.
#include <iostream>

#include "acl/HalyardAclLib.h"
#include "acl/HalyardAclSm.h"
#include "platform/acl/AclConfig.h"
#include "platform/acl/IpFilter.h"
#include "platform/pylon/IpAddr.h"

int main() {
   Acl::Config::Ptr config = Acl::configFactory();
   Acl::AclConfig::Ptr web = config->aclConfigIs( Acl::ip(), Vesper::Name( "web" ) );
   Acl::IpFilter filter;
   filter.protoIs( 6 );
   filter.dstPortIs( Acl::FieldTerm::eq( { 80, 443 } ) );
   filter.destinationIs(
       Pylon::IpAddrWithFullMask( Pylon::strepToValue<Pylon::IpAddr>( "10.0.1.10" ), ~0u ) );
   web->ruleIs( 10, Acl::RuleConfig( Acl::IpRuleConfig( filter ) ) );
   std::cout << Halyard::aclLibName() << ": " << web->name() << " has " << web->ruleCount()
             << " rule, to " << web->rule( 10 )->ipFilter().destination() << " "
             << web->rule( 10 )->ipFilter().dstPort() << "\n";
   return 0;
}
