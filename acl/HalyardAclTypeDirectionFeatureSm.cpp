// The type-direction-feature state machines: construction with the egress class pools, the
// reactors on the entry managers, and the AclHelper operations that make and drop the
// machines of mirroring and uRPF exception ACLs.
#include "acl/HalyardAclTypeDirectionFeatureSm.h"

#include <span>
#include <utility>

#include "acl/HalyardAclSm.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

namespace {

// The feature constants under the names that the invariants of this file are written with.
constexpr HalyardAclFeature aclFeatureMirroring1_ = aclFeatureMirroring1;
constexpr HalyardAclFeature aclFeatureMirroring2_ = aclFeatureMirroring2;
constexpr HalyardAclFeature aclFeatureMirroring3_ = aclFeatureMirroring3;
constexpr HalyardAclFeature aclFeatureMirroring4_ = aclFeatureMirroring4;
constexpr HalyardAclFeature aclFeatureUrpfTHxV4Exception_ = aclFeatureUrpfTHxV4Exception;
constexpr HalyardAclFeature aclFeatureUrpfTHxV4V6Exception_ = aclFeatureUrpfTHxV4V6Exception;

// The share of the egress class that one ACL type owns, and its classes in push order.
struct EgressClassShare {
   U8 mask;
   std::span<const U8> classes;
};

constexpr U8 ip4EgressClasses[] = { 2, 4, 6, 8, 10, 12, 14 };
constexpr U8 macEgressClasses[] = { 16, 32, 48 };
constexpr U8 ip6EgressClasses[] = { 64, 128, 192 };

EgressClassShare egressClassShare( Acl::AclType type ) {
   switch ( type ) {
      case Acl::AclType::ip:
         return { 0x0E, ip4EgressClasses };
      case Acl::AclType::mac:
         return { 0x30, macEgressClasses };
      case Acl::AclType::ipv6:
         break;
   }
   VESPER_ASSERT( type == Acl::AclType::ipv6 );
   return { 0xC0, ip6EgressClasses };
}

}  // namespace

// ---- Reactors: every notice of a manager, whichever way it changed, goes to the machine.

class HalyardAclTypeDirectionFeatureSm::VesperExhaustion
    : public HalyardTcamEntryManager::NotifieeConst {
 public:
   VesperExhaustion( HalyardAclTypeDirectionFeatureSm* sm, const EntryManagerPtr& manager )
       : sm_( sm ), manager_( manager.ptr() ) {}

   void registeredIs( bool registered ) {
      notifierIs( registered ? Vesper::Ptr<const HalyardTcamEntryManager>( manager_ ) : nullptr );
   }
   void onExhausted( U32 unit ) override { sm_->handleTcamExhaustion( unit ); }

 private:
   const Vesper::BackPtr<HalyardAclTypeDirectionFeatureSm> sm_;
   // Not counted: the machine holds the manager for as long as the reactor lives.
   const HalyardTcamEntryManager* const manager_;
};

// One class per manager role, so that a trace or a debugger names the role of a reactor.
#define HALYARD_TDF_SM_REACTOR( Name )                                      \
   class HalyardAclTypeDirectionFeatureSm::Name : public VesperExhaustion { \
    public:                                                                 \
      using VesperExhaustion::VesperExhaustion;                             \
   };
HALYARD_TDF_SM_REACTOR( VesperEntryManager )
HALYARD_TDF_SM_REACTOR( VesperVfpEntryManager )
HALYARD_TDF_SM_REACTOR( VesperVniEntryManager )
HALYARD_TDF_SM_REACTOR( VesperStdEntryManager )
HALYARD_TDF_SM_REACTOR( VesperStdVfpEntryManager )
HALYARD_TDF_SM_REACTOR( VesperRouterEntryManager )
HALYARD_TDF_SM_REACTOR( VesperStdRouterEntryManager )
#undef HALYARD_TDF_SM_REACTOR

class HalyardAclTypeDirectionFeatureSm::VesperGroupManager
    : public HalyardTcamGroupManager::NotifieeConst {
 public:
   explicit VesperGroupManager( HalyardAclTypeDirectionFeatureSm* sm ) : sm_( sm ) {}

   void registeredIs( bool registered ) {
      notifierIs( registered ? HalyardTcamGroupManager::PtrConst( sm_->groupManager() ) : nullptr );
   }
   void onRangeCheckersExhausted( U32 unit ) override { sm_->handleTcamExhaustion( unit ); }

 private:
   const Vesper::BackPtr<HalyardAclTypeDirectionFeatureSm> sm_;
};

namespace {

// A reactor for a manager that is there; none for a null one.
template <class Reactor>
std::unique_ptr<Reactor> reactorFor( HalyardAclTypeDirectionFeatureSm* sm,
                                     const HalyardUnboundedTcamEntryManager::Ptr& manager ) {
   return manager ? std::make_unique<Reactor>( sm, manager ) : nullptr;
}

template <class Reactor>
void registeredIs( const std::unique_ptr<Reactor>& reactor, bool registered ) {
   if ( reactor ) {
      reactor->registeredIs( registered );
   }
}

}  // namespace

// ---- The machine

HalyardAclTypeDirectionFeatureSm::HalyardAclTypeDirectionFeatureSm(
    const HalyardAclTypeDirectionFeature& typeDirectionFeature,
    Vesper::BackPtr<AclHelper> aclHelper, EntryManagerPtr entryManager,
    EntryManagerPtr vfpEntryManager, EntryManagerPtr vniEntryManager,
    EntryManagerPtr stdEntryManager, EntryManagerPtr stdVfpEntryManager,
    EntryManagerPtr routerEntryManager, EntryManagerPtr stdRouterEntryManager )
    : typeDirectionFeature_( typeDirectionFeature ),
      aclHelper_( aclHelper ),
      entryManager_( std::move( entryManager ) ),
      vfpEntryManager_( std::move( vfpEntryManager ) ),
      vniEntryManager_( std::move( vniEntryManager ) ),
      stdEntryManager_( std::move( stdEntryManager ) ),
      stdVfpEntryManager_( std::move( stdVfpEntryManager ) ),
      routerEntryManager_( std::move( routerEntryManager ) ),
      stdRouterEntryManager_( std::move( stdRouterEntryManager ) ) {
   VESPER_ASSERT( entryManager_ );
   vesperEntryManager_ = reactorFor<VesperEntryManager>( this, entryManager_ );
   vesperVfpEntryManager_ = reactorFor<VesperVfpEntryManager>( this, vfpEntryManager_ );
   vesperVniEntryManager_ = reactorFor<VesperVniEntryManager>( this, vniEntryManager_ );
   vesperStdEntryManager_ = reactorFor<VesperStdEntryManager>( this, stdEntryManager_ );
   vesperStdVfpEntryManager_ = reactorFor<VesperStdVfpEntryManager>( this, stdVfpEntryManager_ );
   vesperRouterEntryManager_ = reactorFor<VesperRouterEntryManager>( this, routerEntryManager_ );
   vesperStdRouterEntryManager_ =
       reactorFor<VesperStdRouterEntryManager>( this, stdRouterEntryManager_ );
   vesperGroupManager_ = std::make_unique<VesperGroupManager>( this );
   handleInitialized();
}

HalyardAclTypeDirectionFeatureSm::~HalyardAclTypeDirectionFeatureSm() = default;

void HalyardAclTypeDirectionFeatureSm::groupManagerIs( HalyardTcamGroupManager::Ptr groupManager ) {
   if ( groupManager == groupManager_ ) {
      return;
   }
   groupManager_ = std::move( groupManager );
   if ( hasNotificationActive() ) {
      vesperGroupManager_->registeredIs( true );
   }
}

AclTypeUnitData::Ptr HalyardAclTypeDirectionFeatureSm::unitDataIs( U32 unit ) {
   return unitData_.findOrCreate( unit ).member;
}

void HalyardAclTypeDirectionFeatureSm::handleInitialized() {
   groupManagerIs( entryManager_->groupManager() );
   if ( direction() == Acl::AclDirection::in ) {
      // An ingress class comes from the unit-wide pool and owns every bit of the port's class.
      intfClassMaskIs( AclHelper::aclIntfClassMask_ );
   } else {
      for ( const auto& unitIter : aclHelper_->hcsd()->halyardModId() ) {
         egressPoolIs( unitIter.key() );
      }
      intfClassMaskIs( egressClassShare( type() ).mask );
   }
   initializedIs( true );
}

void HalyardAclTypeDirectionFeatureSm::egressPoolIs( U32 unit ) {
   const AclTypeUnitData::Ptr typeUnit = unitDataIs( unit );
   for ( const U8 intfClass : egressClassShare( type() ).classes ) {
      VTRACE( 3, "handleInitialized( adding intf class " << U32( intfClass ) << " )" );
      typeUnit->freeIntfClassPush( intfClass );
   }
}

void HalyardAclTypeDirectionFeatureSm::hasNotificationActiveIs( bool active ) {
   if ( active == hasNotificationActive() ) {
      return;
   }
   PtrInterface::hasNotificationActiveIs( active );
   reactorsRegisteredIs( active );
}

void HalyardAclTypeDirectionFeatureSm::reactorsRegisteredIs( bool registered ) {
   registeredIs( vesperEntryManager_, registered );
   registeredIs( vesperVfpEntryManager_, registered );
   registeredIs( vesperVniEntryManager_, registered );
   registeredIs( vesperStdEntryManager_, registered );
   registeredIs( vesperStdVfpEntryManager_, registered );
   registeredIs( vesperRouterEntryManager_, registered );
   registeredIs( vesperStdRouterEntryManager_, registered );
   registeredIs( vesperGroupManager_, registered );
}

// A unit whose every manager of this machine is full has no room for anything that waits;
// otherwise the helper decides whether something waits there. The VNI manager takes no part,
// although its notices lead here. The test stops at the first manager with room.
void HalyardAclTypeDirectionFeatureSm::handleTcamExhaustion( U32 unit ) {
   VTRACE( 1, "AclHelper::handleTcamExhaustion" );
   bool allExhausted = entryManager_->exhausted( unit );
   for ( const EntryManagerPtr* manager :
         { &vfpEntryManager_, &routerEntryManager_, &stdVfpEntryManager_, &stdEntryManager_,
           &stdRouterEntryManager_ } ) {
      if ( !allExhausted ) {
         break;
      }
      allExhausted = !*manager || ( *manager )->exhausted( unit );
   }
   if ( allExhausted ) {
      return;
   }
   aclHelper_->handleTcamExhaustion( unit );
}

// ---- AclHelper: the machines of mirroring and uRPF exception ACLs

namespace {

U8 groupIdOf( const HalyardUnboundedTcamEntryManager& manager ) {
   // The group manager knows its groups by the low 8 bits of the group number.
   return static_cast<U8>( manager.groupId() );
}

void checkFeatureIsMirroring( HalyardAclFeature feature ) {
   VESPER_ASSERT( feature == aclFeatureMirroring1_ || feature == aclFeatureMirroring2_ ||
                  feature == aclFeatureMirroring3_ || feature == aclFeatureMirroring4_ );
}

void checkFeatureIsUrpfException( HalyardAclFeature feature ) {
   VESPER_ASSERT( feature == aclFeatureUrpfTHxV4Exception_ ||
                  feature == aclFeatureUrpfTHxV4V6Exception_ );
}

}  // namespace

// Checks that `feature` is a mirroring feature whose manager stands on a mirroring group, and
// names that group.
AclHelper::MirroringGroup AclHelper::mirroringGroup( HalyardAclFeature feature ) const {
   checkFeatureIsMirroring( feature );
   VESPER_ASSERT( mirroringAclEntryManager( feature ) );
   UnboundedManagerPtr manager = mirroringAclEntryManager( feature );
   HalyardTcamGroupManager::Ptr gm = manager->groupManager();
   const U8 groupId = groupIdOf( *manager );
   VESPER_ASSERT( gm->groupMirroringAclValid( groupId ) );
   return { std::move( manager ), std::move( gm ), groupId };
}

// A mirroring group holds the entries of one ACL type at a time: the first machine made on it
// records its type, and another type is refused until a clear of the group forgets it.
void AclHelper::setMirroringHalyardAclTypeDirectionFeatureSm( Acl::AclType type,
                                                              Acl::AclDirection direction,
                                                              HalyardAclFeature feature ) {
   const MirroringGroup group = mirroringGroup( feature );
   const int recorded = group.gm->groupMirroringAclType( group.groupId );
   if ( recorded == groupMirroringAclTypeNone ) {
      group.gm->groupMirroringAclTypeIs( group.groupId, static_cast<int>( type ) );
   } else {
      const Acl::AclType groupAclType = static_cast<Acl::AclType>( recorded );
      VESPER_ASSERT( type == groupAclType );
   }
   halyardAclTypeDirectionFeatureSmIs( HalyardAclTypeDirectionFeature( type, direction, feature ),
                                       this, group.manager, nullptr, nullptr, nullptr, nullptr,
                                       nullptr, nullptr );
}

void AclHelper::clearMirroringHalyardAclTypeDirectionFeatureSm( Acl::AclType type,
                                                                Acl::AclDirection direction,
                                                                HalyardAclFeature feature ) {
   const MirroringGroup group = mirroringGroup( feature );
   group.gm->groupMirroringAclTypeIs( group.groupId, groupMirroringAclTypeNone );
   halyardAclTypeDirectionFeatureSmDel(
       HalyardAclTypeDirectionFeature( type, direction, feature ) );
}

// The uRPF exception groups take router ACLs only, so the one manager also serves as the
// router manager.
void AclHelper::setUrpfHalyardAclTypeDirectionFeatureSm( Acl::AclType type,
                                                         Acl::AclDirection direction,
                                                         HalyardAclFeature feature ) {
   checkFeatureIsUrpfException( feature );
   if ( feature == aclFeatureUrpfTHxV4Exception_ ) {
      VESPER_ASSERT( type == Acl::ip_ );
   }
   const UnboundedManagerPtr manager = feature == aclFeatureUrpfTHxV4Exception_
                                           ? urpfTHxV4ExceptionAclGroupEntryManager()
                                           : urpfTHxV4V6ExceptionAclGroupEntryManager();
   halyardAclTypeDirectionFeatureSmIs( HalyardAclTypeDirectionFeature( type, direction, feature ),
                                       this, manager, nullptr, nullptr, nullptr, nullptr, manager,
                                       nullptr );
}

void AclHelper::clearUrpfHalyardAclTypeDirectionFeatureSm( Acl::AclType type,
                                                           Acl::AclDirection direction,
                                                           HalyardAclFeature feature ) {
   checkFeatureIsUrpfException( feature );
   halyardAclTypeDirectionFeatureSmDel(
       HalyardAclTypeDirectionFeature( type, direction, feature ) );
}

}  // namespace Halyard
