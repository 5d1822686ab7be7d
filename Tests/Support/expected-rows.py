#!/usr/bin/env python3
"""What the program has to find on a Mac's disk, found another way: prints one row a line, sorted.

    expected-rows.py ROOT HOME < CATALOG

ROOT is the folder in place of "/" ("" for this machine), HOME the home folder in it. CATALOG has a line
"KIND<tab>ID<tab>contents|whole<tab>PATH" for each root. A row is "KIND<tab>ID<tab>BYTES<tab>PATH".
"""
import os
import stat
import sys

top, home = sys.argv[1], sys.argv[2]

fixed = ['/dev', '/net', '/home', '/.vol', '/Volumes', '/System/Volumes', '/System/Volumes/Data/Volumes',
         '/System/Volumes/Data/dev', '/System/Volumes/Data/net', '/System/Volumes/Data/home',
         '/System/Volumes/Data/.vol', '/System/Volumes/Update/mnt1', '/System/Volumes/VM/.snapshots']
cloud = [home + '/Library/CloudStorage', home + '/Library/Mobile Documents']
skipped = {top + path for path in fixed} | set(cloud)


def size(path, device=None):
    """Bytes allocated at and under a path, on its own device."""
    try:
        status = os.lstat(path)
    except OSError:
        return 0
    if not stat.S_ISDIR(status.st_mode):
        return status.st_blocks * 512
    if path in skipped or device not in (None, status.st_dev):
        return 0
    return sum(size(path + '/' + name, status.st_dev) for name in names(path))


def names(path):
    try:
        return [name for name in os.listdir(path)]
    except OSError:
        return []


def children(path):
    return [path + '/' + name for name in names(path) if name != '.DS_Store']


def other_users():
    own = home.rsplit('/', 1)[1]
    users = top + '/Users'
    return [users + '/Shared'] + [users + '/' + name for name in names(users)
                                  if name not in (own, 'Shared') and not name.startswith('.')]


rows = []
claimed = set(skipped)
others = other_users()
for line in sys.stdin.read().splitlines():
    kind, identifier, mode, root = line.split('\t')
    if kind == 'category':
        claimed.add(root)
    if identifier == 'othersShared' and root not in others:
        rows.append((kind, identifier, 0, 'unexpected root ' + root))
    paths = children(root) if mode == 'contents' else [root]
    rows += [(kind, identifier, size(path), path) for path in paths if size(path) >= 1]

for root in [home + '/Library', top + '/Library', top + '/private/var', home]:
    for path in children(root):
        name = path.rsplit('/', 1)[1]
        if path in claimed or (root == home and (not name.startswith('.') or name == '.Trash')):
            continue
        if size(path) >= 10000000:
            rows.append(('category', 'systemData', size(path), path))

for row in sorted({'\t'.join(map(str, row)) for row in rows}):
    print(row)
