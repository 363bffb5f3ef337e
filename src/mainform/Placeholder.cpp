// Replaced by the first real source of this folder.
