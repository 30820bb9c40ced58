// The ACL-level records: HalyardAclData and the reactions of AclUnitData to its ports and
// its interface class.
#include "acl/HalyardAclTypes.h"

#include <vector>

#include "acl/HalyardAclSm.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclTypes" )

namespace Halyard {

namespace {

// The bits of the first four words of a port bitmap, highest first.
constexpr int renderedWords = 4;

std::string bitmapText( const bcm_pbmp_t& mask ) {
   std::string text;
   text.reserve( renderedWords * bcm_pbmp_t::wordBits );
   for ( int word = renderedWords - 1; word >= 0; --word ) {
      for ( int bit = bcm_pbmp_t::wordBits - 1; bit >= 0; --bit ) {
         text += ( ( mask.pbits[word] >> bit ) & 1u ) ? '1' : '0';
      }
   }
   return text;
}

}  // namespace

AclUnitData::AclUnitData( U32 unit, Acl::AclType type, Acl::AclDirection direction,
                          Vesper::BackPtr<AclHelper> aclHelper )
    : unit_( unit ), type_( type ), direction_( direction ), aclHelper_( aclHelper ) {
   dropEntryAclId_.doInit();
   handleInitialized();
}

void AclUnitData::handleInitialized() {
   handleActivePorts();
   BCM_PBMP_CLEAR( subIntfPortMask_ );
   initialized_ = true;
}

void AclUnitData::activePortIs( U32 port ) {
   if ( activePort_.has( port ) ) {
      return;
   }
   activePort_.set( port, true );
   handleActivePort( port );
}

bool AclUnitData::activePortDel( U32 port ) {
   if ( !activePort_.del( port ) ) {
      return false;
   }
   handleActivePort( port );
   return true;
}

void AclUnitData::handleActivePort( U32 port ) {
   VTRACE( 5, "AclUnitData::handleActivePort( unit " << unit_ << " port " << port << " )" );
   handleActivePorts();
}

void AclUnitData::handleActivePorts() {
   bcm_pbmp_t mask;
   BCM_PBMP_CLEAR( mask );
   for ( const auto& member : activePort_ ) {
      BCM_PBMP_PORT_ADD( mask, static_cast<bcm_port_t>( member.key() ) );
   }
   portMask_ = mask;
}

std::string AclUnitData::getPortMask( bool subIntf ) const {
   return bitmapText( subIntf ? subIntfPortMask_ : portMask_ );
}

void AclUnitData::intfClassIs( S16 intfClass ) {
   if ( intfClass == intfClass_ ) {
      return;
   }
   intfClass_ = intfClass;
   handleIntfClass();
}

void AclUnitData::handleIntfClass() {
   // The helper's SDK calls let the activity lock go, so the ports are taken first and the
   // walk does not depend on the sets staying as they are.
   std::vector<U32> ports;
   if ( !intfClassValid() ) {
      for ( const auto& member : intfClassAppliedPort_ ) {
         ports.push_back( member.key() );
      }
      for ( const U32 port : ports ) {
         aclHelper_->doSetPortClass( type_, direction_, unit_, port, 0, feature_ );
      }
      intfClassAppliedPort_.clear();
      return;
   }
   for ( const auto& member : activePort_ ) {
      ports.push_back( member.key() );
   }
   for ( const U32 port : ports ) {
      aclHelper_->doSetPortClass( type_, direction_, unit_, port, static_cast<U8>( intfClass_ ),
                                  feature_ );
      intfClassAppliedPort_.set( port, true );
   }
}

AclUnitData::Ptr HalyardAclData::unitDataIs( U32 unit, Acl::AclType type,
                                             Acl::AclDirection direction,
                                             Vesper::BackPtr<AclHelper> aclHelper ) {
   return unitData_.findOrCreate( unit, type, direction, aclHelper ).member;
}

bool HalyardAclData::oneActivePort() const {
   bool found = false;
   for ( const auto& member : unitData_ ) {
      if ( !member.value()->activePort().empty() ) {
         found = true;
         break;
      }
   }
   VTRACE( 5, "HalyardAclData::oneActivePort() aclName=" << name() << " type=" << type()
                                                         << " direction=" << direction()
                                                         << " foundActivePort=" << found );
   return found;
}

}  // namespace Halyard
