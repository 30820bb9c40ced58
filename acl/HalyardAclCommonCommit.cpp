// AclCommonUnitData::commitAcl: the entries of one ACL on one unit reach the TCAM.
#include "acl/HalyardAclCommon.h"
#include "platform/shim/FpCmd.h"
#include "platform/shim/SdkCall.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclCommon" )

namespace Halyard {

namespace {

// The level at which commit also dumps every entry it installs.
constexpr int entryDumpLevel = 7;

}  // namespace

void AclCommonUnitData::commitAcl( const Fennel::AclKey& key, bool installEntry ) {
   VTRACE( 1, "Unit: " << unit() << " installed " << installed_ << " dirty " << dirty_
                       << " aclName: " << key.aclName() );
   if ( installed_ || dirty_ ) {
      return;
   }
   for ( auto& rule : aclRule_ ) {
      VTRACE( 1, "ruleNum: " << rule.ruleNum() );
      for ( const auto& list : rule.entryList() ) {
         for ( const auto& entryIter : list.entry() ) {
            const U32 entry = entryIter.key();
            const HalyardTcamEntryManager::Ptr entryMgr =
                tcamGroupManager_->tcamManagerForEntry( entry );
            VESPER_ASSERT( entryMgr );
            if ( !installEntry ) {
               continue;
            }
            entryMgr->installEntry( unit(), entry );
            Shim::fpEntryInstall( entry );
            if ( vesperFileTrace().enabled( entryDumpLevel ) ) {
               SDK_NO_CHECK( bcm_field_entry_dump( unit(), entryIter.key() ) );
            }
         }
      }
      // A newly committed rule counts its hits from zero.
      rule.lastReadValueIs( 0 );
   }
   installed_ = true;
}

}  // namespace Halyard
