// Groups and the lifecycle of entries: creation, order, installation, counters.
#include "sim/chip/ChipModel.h"

#include <algorithm>

#include "sim/chip/ChipModelInternal.h"

namespace Sim {

ChipModel::ChipModel( const ChipConfig& config )
    : config_( config ),
      ports_( config.portCount, config.moduleId ),
      ranges_( config.rangeCheckers ),
      udfs_( config.udfChunks ) {}

ChipModel::~ChipModel() = default;

EntryRecord* ChipModel::find( EntryId id ) {
   auto it = entries_.find( id );
   return it == entries_.end() ? nullptr : it->second.get();
}

const EntryRecord* ChipModel::find( EntryId id ) const {
   auto it = entries_.find( id );
   return it == entries_.end() ? nullptr : it->second.get();
}

ChipModel::GroupRecord* ChipModel::findGroup( GroupId id ) {
   auto it = groups_.find( id );
   return it == groups_.end() ? nullptr : it->second.get();
}

void ChipModel::sortStage( Stage s ) {
   auto& list = stageGroups_[static_cast<std::size_t>( s )];
   std::sort( list.begin(), list.end(), []( const GroupRecord* a, const GroupRecord* b ) {
      return a->priority != b->priority ? a->priority > b->priority : a->id < b->id;
   } );
}

void ChipModel::softwareChanged( EntryRecord& e ) {
   e.pending = true;
}

void ChipModel::hardwareChanged( EntryRecord& e ) {
   groups_.at( e.group )->tableDirty = true;
   indexQueue( e );
}

void ChipModel::orderChanged( const EntryRecord& e ) {
   groups_.at( e.group )->tableDirty = true;
   // The index brings an entry's place in line with its order as well as with its face.
   indexQueue( *find( e.id ) );
}

void ChipModel::indexQueue( EntryRecord& e ) {
   if ( config_.lookup == LookupMethod::Indexed && !e.indexQueued ) {
      e.indexQueued = true;
      groups_.at( e.group )->indexPending.push_back( e.id );
   }
}

// An id whose entry is gone was taken out of the index when the entry was destroyed; one that
// names a new entry of the same id brings that one in.
void ChipModel::indexFlush( GroupRecord& g ) {
   for ( EntryId id : g.indexPending ) {
      EntryRecord* e = find( id );
      if ( e && e->indexQueued && e->group == g.id ) {
         e->indexQueued = false;
         g.index.entryIs( *e );
      }
   }
   g.indexPending.clear();
}

Status ChipModel::groupCreate( GroupId id, Stage stage, S32 priority ) {
   if ( groups_.count( id ) ) {
      return Status::Exists;
   }
   auto g = std::make_unique<GroupRecord>();
   g->id = id;
   g->stage = stage;
   g->priority = priority;
   stageGroups_[static_cast<std::size_t>( stage )].push_back( g.get() );
   groups_.emplace( id, std::move( g ) );
   sortStage( stage );
   return Status::Ok;
}

Status ChipModel::groupDestroy( GroupId id ) {
   GroupRecord* g = findGroup( id );
   if ( !g ) {
      return Status::NotFound;
   }
   if ( !g->members.empty() ) {
      return Status::Busy;
   }
   auto& list = stageGroups_[static_cast<std::size_t>( g->stage )];
   list.erase( std::find( list.begin(), list.end(), g ) );
   groups_.erase( id );
   return Status::Ok;
}

Status ChipModel::groupPriorityIs( GroupId id, S32 priority ) {
   GroupRecord* g = findGroup( id );
   if ( !g ) {
      return Status::NotFound;
   }
   g->priority = priority;
   sortStage( g->stage );
   return Status::Ok;
}

Status ChipModel::groupKeySetIs( GroupId id, const KeySet& keys ) {
   GroupRecord* g = findGroup( id );
   if ( !g ) {
      return Status::NotFound;
   }
   g->keys = keys;
   return Status::Ok;
}

std::optional<KeySet> ChipModel::groupKeySet( GroupId id ) const {
   auto it = groups_.find( id );
   return it == groups_.end() ? std::nullopt : std::optional<KeySet>( it->second->keys );
}

const KeySet& ChipModel::keysOf( const EntryRecord& e ) const {
   return groups_.at( e.group )->keys;
}

std::optional<GroupInfo> ChipModel::group( GroupId id ) const {
   auto it = groups_.find( id );
   if ( it == groups_.end() ) {
      return std::nullopt;
   }
   const GroupRecord& g = *it->second;
   return GroupInfo{ g.id, g.stage, g.priority, static_cast<U32>( g.members.size() ) };
}

std::vector<GroupId> ChipModel::groups() const {
   std::vector<GroupId> ids;
   for ( const auto& [id, g] : groups_ ) {
      ids.push_back( id );
   }
   return ids;
}

std::optional<EntryId> ChipModel::entryCreate( GroupId group ) {
   if ( !groups_.count( group ) ) {
      return std::nullopt;
   }
   // Ids are issued upward and skip those taken by entryCreateWithId; 0 is never an id.
   while ( nextEntryId_ == 0 || entries_.count( nextEntryId_ ) ) {
      ++nextEntryId_;
   }
   const EntryId id = nextEntryId_++;
   if ( entryCreateWithId( group, id ) != Status::Ok ) {
      return std::nullopt;
   }
   return id;
}

Status ChipModel::entryCreateWithId( GroupId group, EntryId id ) {
   GroupRecord* g = findGroup( group );
   if ( !g ) {
      return Status::NotFound;
   }
   if ( id == 0 ) {
      return Status::Param;
   }
   if ( entries_.count( id ) ) {
      return Status::Exists;
   }
   auto e = std::make_unique<EntryRecord>();
   e->id = id;
   e->group = group;
   e->ordinal = nextOrdinal_++;
   g->members.push_back( e.get() );
   entries_.emplace( id, std::move( e ) );
   return Status::Ok;
}

Status ChipModel::entryDestroy( EntryId id ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   releaseReferences( *e );
   GroupRecord* g = findGroup( e->group );
   g->members.erase( std::find( g->members.begin(), g->members.end(), e ) );
   g->tableDirty = true;
   g->index.entryDel( id );
   entries_.erase( id );
   return Status::Ok;
}

void ChipModel::releaseReferences( EntryRecord& e ) {
   for ( const auto& r : e.ranges ) {
      ranges_.release( r.id );
   }
   e.ranges.clear();
   for ( const auto& [chunk, value] : e.udf ) {
      udfs_.release( chunk );
   }
   e.udf.clear();
}

std::optional<GroupId> ChipModel::entryGroup( EntryId id ) const {
   const EntryRecord* e = find( id );
   return e ? std::optional<GroupId>( e->group ) : std::nullopt;
}

std::vector<EntryId> ChipModel::entries( GroupId group ) const {
   auto it = groups_.find( group );
   if ( it == groups_.end() ) {
      return {};
   }
   std::vector<EntryRecord*> members = it->second->members;
   std::sort( members.begin(), members.end(), lookupBefore );
   std::vector<EntryId> ids;
   for ( const EntryRecord* e : members ) {
      ids.push_back( e->id );
   }
   return ids;
}

Status ChipModel::entryPriorityIs( EntryId id, U32 priority ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   if ( priority > kMaxPriority ) {
      return Status::Param;
   }
   e->priority = priority;
   orderChanged( *e );
   return Status::Ok;
}

std::optional<U32> ChipModel::entryPriority( EntryId id ) const {
   const EntryRecord* e = find( id );
   return e ? std::optional<U32>( e->priority ) : std::nullopt;
}

Status ChipModel::entryOrdinalIs( EntryId id, U64 ordinal ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   e->ordinal = ordinal;
   orderChanged( *e );
   return Status::Ok;
}

std::optional<U64> ChipModel::entryOrdinal( EntryId id ) const {
   const EntryRecord* e = find( id );
   return e ? std::optional<U64>( e->ordinal ) : std::nullopt;
}

Status ChipModel::entryInstall( EntryId id ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   e->image = compileEntry( *e, udfs_ );
   e->installed = true;
   e->enabled = true;
   e->pending = false;
   hardwareChanged( *e );
   return Status::Ok;
}

Status ChipModel::entryRemove( EntryId id ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   if ( !e->installed ) {
      return Status::NotInstalled;
   }
   e->image.reset();
   e->installed = false;
   e->enabled = false;
   hardwareChanged( *e );
   return Status::Ok;
}

Status ChipModel::entryEnableIs( EntryId id, bool enable ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   if ( !e->installed ) {
      return Status::NotInstalled;
   }
   e->enabled = enable;
   hardwareChanged( *e );
   return Status::Ok;
}

std::optional<bool> ChipModel::entryInstalled( EntryId id ) const {
   const EntryRecord* e = find( id );
   return e ? std::optional<bool>( e->installed ) : std::nullopt;
}

std::optional<bool> ChipModel::entryEnabled( EntryId id ) const {
   const EntryRecord* e = find( id );
   return e ? std::optional<bool>( e->enabled ) : std::nullopt;
}

std::optional<bool> ChipModel::entryPending( EntryId id ) const {
   const EntryRecord* e = find( id );
   return e ? std::optional<bool>( e->pending ) : std::nullopt;
}

std::optional<U64> ChipModel::entryHits( EntryId id ) const {
   const EntryRecord* e = find( id );
   return e ? std::optional<U64>( e->hits ) : std::nullopt;
}

Status ChipModel::entryHitsIs( EntryId id, U64 hits ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   e->hits = hits;
   return Status::Ok;
}

}  // namespace Sim
