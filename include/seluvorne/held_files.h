// Database files held open for the length of a member that works through
// many pages.
//
// A page copy opens and closes the same few files for every page. Each last
// close folds the file's log back into it and syncs it twice, and each first
// open reads the catalogue again and starts with a cold cache: most of what a
// page costs. While a HeldFiles lives, every database file this process opens
// stays open after its handles close, as if one more handle held it (marked
// in use, its connection, cache and prepared statements kept), until the
// HeldFiles ends. Nothing else changes: each member still commits its own
// rows, so a crash leaves the files as a close after every page would.
//
//   {
//     dao::HeldFiles held;
//     for (...) CopyOnePage(...);   // opens and closes its files per page
//   }                               // the files close here
//
// Scopes nest: an inner one joins the outer, which releases the files.
#pragma once

namespace seluvorne::dao {

class HeldFiles {
 public:
  HeldFiles();
  ~HeldFiles();
  HeldFiles(const HeldFiles&) = delete;
  HeldFiles& operator=(const HeldFiles&) = delete;
};

}  // namespace seluvorne::dao
