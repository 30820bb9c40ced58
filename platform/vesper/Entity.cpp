#include "platform/vesper/Entity.h"

#include <algorithm>

#include "platform/vesper/Exception.h"
#include "platform/vesper/Type.h"

namespace Vesper {

Entity::Entity( Name name, BackPtr<Entity> parent, Name parentAttrName )
    : name_( std::move( name ) ),
      parent_( parent ),
      parentAttrName_( std::move( parentAttrName ) ) {
   attach();
}

Entity::~Entity() {
   detach();
   for ( Entity* child : children_ ) {
      child->parent_ = nullptr;
   }
}

String Entity::fullName() const {
   if ( !parent_ ) {
      return String( name_.view() );
   }
   return String( parent_->fullName().str() + "/" + name_.str() );
}

Entity* Entity::entity( const Name& childName ) const {
   const auto it = std::find_if( children_.begin(), children_.end(),
                                 [&childName]( Entity* e ) { return e->name_ == childName; } );
   return it == children_.end() ? nullptr : *it;
}

void Entity::parentIs( BackPtr<Entity> parent, Name parentAttrName ) {
   detach();
   parent_ = parent;
   parentAttrName_ = std::move( parentAttrName );
   attach();
   handleParent();
}

void Entity::nameIsFromBackup( const Name& name ) {
   if ( !hasBackupSupport() ) {
      throw Exception( "entity " + fullName().str() + " has no backup support to restore name " +
                       name.str() + " from" );
   }
   name_ = name;
}

void Entity::handleParent() {}

bool Entity::hasBackupSupport() const {
   return false;
}

const Type& Entity::fwkType() const {
   static const Type type( "Vesper::Entity" );
   return type;
}

void Entity::attach() {
   if ( parent_ ) {
      parent_->children_.push_back( this );
   }
}

void Entity::detach() {
   if ( parent_ ) {
      std::erase( parent_->children_, this );
      parent_ = nullptr;
   }
}

}  // namespace Vesper
