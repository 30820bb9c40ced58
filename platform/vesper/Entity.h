// Named objects in the agent's tree of objects.
//
// An Entity has a name and, unless it is a root, a parent (not counted) and
// the name of the parent's attribute that holds it. Its full name is the
// parent's full name, "/", and its own name. A parent knows its children by
// name for entity(), without owning them: ownership stays with the attribute
// that holds the child by a counted pointer.
//
// Invariants:
//  1. A child is listed by its parent exactly while its parent pointer names it.
//  2. A parent that dies first leaves its children as roots, not dangling.
//
// Backup and the wire facilities are not part of this runtime: an entity has
// no backup support unless a subclass says so, and restoring a name from a
// backup without it raises an exception.
#pragma once

#include <vector>

#include "platform/vesper/Ptr.h"
#include "platform/vesper/String.h"

namespace Vesper {

class Entity : public PtrInterface {
 public:
   explicit Entity( Name name, BackPtr<Entity> parent = nullptr, Name parentAttrName = Name() );
   ~Entity() override;

   const Name& name() const { return name_; }
   String fullName() const;
   BackPtr<Entity> parent() const { return parent_; }
   const Name& parentAttrName() const { return parentAttrName_; }
   // The child of this entity named `childName`, or null. Not counted: the
   // child may be held by no counted pointer at all (a member object).
   Entity* entity( const Name& childName ) const;

   // Moves this entity under another parent (null: makes it a root) and runs
   // handleParent().
   void parentIs( BackPtr<Entity> parent, Name parentAttrName );

   // Hooks.
   // Restores the name saved in a backup. REQUIRES: hasBackupSupport().
   virtual void nameIsFromBackup( const Name& name );
   // Runs after the parent changed.
   virtual void handleParent();
   virtual bool hasBackupSupport() const;

   const Type& fwkType() const override;

 private:
   void attach();
   void detach();

   Name name_;
   BackPtr<Entity> parent_;
   Name parentAttrName_;
   std::vector<Entity*> children_;
};

}  // namespace Vesper
