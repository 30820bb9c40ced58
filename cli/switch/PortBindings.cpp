#include "cli/switch/PortBindings.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "platform/pylon/ValueText.h"

namespace HalyardCli {

namespace {

[[noreturn]] void refuse( const char* what ) {
   std::fprintf( stderr,
                 "halyard-acl: %s needs the back-end's interface binding, which is not "
                 "available in this build yet\n",
                 what );
   std::abort();
}

class PortBindings : public Fennel::AclBindingOps {
 public:
   PortBindings( Halyard::AclHelper::Ptr helper, const Sim::SwitchProfile& profile )
       : helper_( std::move( helper ) ), profile_( profile ) {}

   bool add( const Fennel::IntfPairKey& intf, const Fennel::AclData::Ptr& aclData,
             const Fennel::AclDataStatus::Ptr& ) override {
      if ( aclData->aclVersion() != Fennel::AclData::aclVersionNone ) {
         refuse( "a port for an ACL that stands in hardware" );
      }
      const Halyard::HalyardAclData::Ptr saclData = helper_->halyardAclDataIs( aclData->key() );
      for ( const auto& member : helper_->hcsd()->halyardModId() ) {
         const Halyard::AclUnitData::Ptr unitData = saclData->unitDataIs(
             member.key(), aclData->aclType(), aclData->direction(), helper_.ptr() );
         helper_->createCommonUnitData( unitData );
      }
      for ( Pylon::IntfId port : portsOf( intf.intfId() ) ) {
         const HalyardTypes::HalyardPort hp = helper_->hcsd()->halyardIntfToPort( port );
         saclData->unitData( hp.unit() )->activePortIs( hp.port() );
      }
      return false;
   }

   bool remove( const Fennel::IntfPairKey&, const Fennel::AclData::Ptr&, bool ) override {
      refuse( "taking an interface from an ACL" );
   }

   void updatePorts( const Fennel::AclData::Ptr&, bool ) override {
      // The ports went in with the entries: nothing to update on a first application.
   }

 private:
   // The front-panel ports behind an interface.
   std::vector<Pylon::IntfId> portsOf( Pylon::IntfId intf ) const {
      if ( intf.isPortChannel() ) {
         const auto it = profile_.portChannels().find( intf.number() );
         if ( it != profile_.portChannels().end() ) {
            return it->second;
         }
      }
      if ( !helper_->hcsd()->halyardIntfToPortHas( intf ) ) {
         std::fprintf( stderr, "halyard-acl: %s has no port on the switch\n",
                       Pylon::valueToStrep( intf ).c_str() );
         std::abort();
      }
      return { intf };
   }

   Halyard::AclHelper::Ptr helper_;
   const Sim::SwitchProfile& profile_;
};

}  // namespace

std::shared_ptr<Fennel::AclBindingOps> portBindings( Halyard::AclHelper::Ptr helper,
                                                     const Sim::SwitchProfile& profile ) {
   return std::make_shared<PortBindings>( std::move( helper ), profile );
}

}  // namespace HalyardCli
