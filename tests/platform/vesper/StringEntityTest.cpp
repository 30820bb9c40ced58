#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <unordered_set>

#include "platform/vesper/Entity.h"
#include "platform/vesper/Exception.h"

namespace {

using Vesper::Entity;
using Vesper::Name;
using Vesper::Ptr;
using Vesper::String;

// An entity that records its hook calls and may claim backup support.
class Node : public Entity {
 public:
   Node( Name name, Vesper::BackPtr<Entity> parent = nullptr, Name attr = Name(),
         bool backup = false )
       : Entity( std::move( name ), parent, std::move( attr ) ), backup_( backup ) {}
   void handleParent() override { ++parentChanges; }
   bool hasBackupSupport() const override { return backup_; }
   int parentChanges = 0;

 private:
   bool backup_;
};

TEST( EntityTest, NamesParentsAndChildren ) {
   Node root( "halyard" );
   Ptr<Node> child( new Node( "aclSm", &root, "aclSmEntity" ) );
   Node grandchild( "vfp", child.ptr(), "vfpAclTypeForPort" );

   EXPECT_EQ( root.fullName(), "halyard" );
   EXPECT_EQ( grandchild.fullName(), "halyard/aclSm/vfp" );
   EXPECT_EQ( child->parent(), &root );
   EXPECT_EQ( root.entity( "aclSm" ), child.ptr() );
   EXPECT_EQ( root.entity( "vfp" ), nullptr ) << "only direct children";
   EXPECT_EQ( child->references(), 1u ) << "the parent does not count its children";
}

TEST( EntityTest, ParentIsMovesTheChildAndRunsTheHook ) {
   Node first( "first" ), second( "second" );
   Node child( "child", &first, "a" );
   EXPECT_EQ( child.parentChanges, 0 ) << "construction is not a change of parent";
   child.parentIs( &second, "b" );
   EXPECT_EQ( child.parentChanges, 1 );
   EXPECT_EQ( first.entity( "child" ), nullptr );
   EXPECT_EQ( second.entity( "child" ), &child );
   EXPECT_EQ( child.fullName(), "second/child" );
   child.parentIs( nullptr, Name() );
   EXPECT_EQ( child.fullName(), "child" );
   EXPECT_EQ( second.entity( "child" ), nullptr );
}

TEST( EntityTest, ChildrenOutlivingTheirParentBecomeRoots ) {
   auto parent = std::make_unique<Node>( "parent" );
   Node child( "child", parent.get(), "a" );
   parent.reset();
   EXPECT_FALSE( child.parent() );
   EXPECT_EQ( child.fullName(), "child" );
}

}  // namespace
