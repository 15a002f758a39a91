-- Version 1 of the store. Instants are seconds since 1970 UTC; "floating" seconds are wall-clock time counted
-- the same way. change: the store's change number when the row was last written.

CREATE TABLE counter (change INTEGER NOT NULL);
INSERT INTO counter VALUES (1);

CREATE TABLE source (
  id INTEGER PRIMARY KEY,
  identifier TEXT NOT NULL UNIQUE,
  type INTEGER NOT NULL,
  title TEXT NOT NULL
);
-- The user's own addresses in that account: an organizer with one of them is the user.
CREATE TABLE owner_address (source INTEGER NOT NULL REFERENCES source, address TEXT NOT NULL);

CREATE TABLE calendar (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  identifier TEXT NOT NULL UNIQUE,
  source INTEGER NOT NULL REFERENCES source,
  kind INTEGER NOT NULL,               -- 0 events, 1 reminders
  type INTEGER NOT NULL DEFAULT 0,
  title TEXT NOT NULL,
  red REAL, green REAL, blue REAL,
  is_immutable INTEGER NOT NULL DEFAULT 0,
  is_subscribed INTEGER NOT NULL DEFAULT 0,
  allows_modification INTEGER NOT NULL DEFAULT 1,
  is_default INTEGER NOT NULL DEFAULT 0,
  change INTEGER NOT NULL
);

-- VTIMEZONEs, one row for each different text; rows stay for good. The zone key of one is "vtimezone:" and
-- the id.
CREATE TABLE zone (id INTEGER PRIMARY KEY, tzid TEXT NOT NULL, text TEXT NOT NULL, UNIQUE (tzid, text));
-- What items of a calendar that came without an envelope mean by a TZID.
CREATE TABLE calendar_zone (
  calendar INTEGER NOT NULL REFERENCES calendar ON DELETE CASCADE,
  zone INTEGER NOT NULL REFERENCES zone,
  PRIMARY KEY (calendar, zone)
) WITHOUT ROWID;

-- One VCALENDAR that was imported: its property lines before the first component, and everything after them
-- that is no item (VTIMEZONE and whatever else there is), in their places, so that an export gives them back.
CREATE TABLE envelope (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  ordinal INTEGER NOT NULL,            -- 0 for the first VCALENDAR of that title in its file
  title TEXT NOT NULL,                 -- of its calendars when it was imported
  header TEXT NOT NULL
);
CREATE TABLE envelope_part (
  envelope INTEGER NOT NULL REFERENCES envelope ON DELETE CASCADE,
  position INTEGER NOT NULL,
  name TEXT NOT NULL,
  text TEXT NOT NULL,
  zone INTEGER REFERENCES zone,        -- of a VTIMEZONE: what the envelope's items mean by its TZID
  PRIMARY KEY (envelope, position)
) WITHOUT ROWID;
CREATE TABLE calendar_envelope (
  calendar INTEGER NOT NULL REFERENCES calendar ON DELETE CASCADE,
  envelope INTEGER NOT NULL REFERENCES envelope ON DELETE CASCADE,
  PRIMARY KEY (calendar, envelope)
) WITHOUT ROWID;
CREATE INDEX calendar_envelope_envelope ON calendar_envelope (envelope);

CREATE TABLE item (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  calendar INTEGER NOT NULL REFERENCES calendar,
  kind INTEGER NOT NULL,
  identifier TEXT NOT NULL UNIQUE,
  uid TEXT NOT NULL,
  change INTEGER NOT NULL,
  stored INTEGER NOT NULL,             -- when it was made or last imported
  envelope INTEGER REFERENCES envelope,
  places TEXT,                         -- of its components in the envelope, as they stood: "3" or "3,17"
  text TEXT NOT NULL,                  -- the whole resource: the master and its overridden occurrences
  UNIQUE (uid, calendar)
);
CREATE INDEX item_calendar ON item (calendar);
CREATE INDEX item_envelope ON item (envelope);
CREATE INDEX item_change ON item (change);

-- Events that occur once. extent: the power of 4 (of seconds) that their length stays below, so that a range
-- is one walk along the index for each extent that occurs.
CREATE TABLE single_event (
  extent INTEGER NOT NULL,
  lo INTEGER NOT NULL,                 -- start; floating ones as wall clock
  item INTEGER NOT NULL,
  hi INTEGER NOT NULL,                 -- end
  calendar INTEGER NOT NULL,
  flags INTEGER NOT NULL,              -- 1 floating start, 2 floating end, 4 all-day
  title TEXT NOT NULL,
  PRIMARY KEY (extent, lo, item)
) WITHOUT ROWID;
CREATE INDEX single_event_item ON single_event (item);

CREATE TABLE series_event (
  item INTEGER PRIMARY KEY,
  calendar INTEGER NOT NULL,
  lo INTEGER NOT NULL,                 -- extent of the whole series
  hi INTEGER NOT NULL,
  data BLOB NOT NULL                   -- recurrence::encode
);
CREATE INDEX series_event_hi ON series_event (hi);

CREATE TABLE reminder (
  item INTEGER PRIMARY KEY,
  calendar INTEGER NOT NULL,
  is_completed INTEGER NOT NULL,
  completion INTEGER,
  due INTEGER,
  due_is_floating INTEGER NOT NULL DEFAULT 0,
  created INTEGER NOT NULL             -- CREATED, else the time of the import
);
CREATE INDEX reminder_calendar ON reminder (calendar);

-- Items that are gone, of the last changes.
CREATE TABLE removed_item (item INTEGER PRIMARY KEY, calendar INTEGER NOT NULL, uid TEXT NOT NULL, change INTEGER NOT NULL);
CREATE INDEX removed_item_change ON removed_item (change);

CREATE TABLE contact (
  id INTEGER PRIMARY KEY,
  uid TEXT UNIQUE,                     -- of the card, if it has one
  name TEXT NOT NULL,
  address TEXT NOT NULL,
  text TEXT NOT NULL UNIQUE            -- the whole card
);
CREATE TABLE contact_email (email TEXT NOT NULL, contact INTEGER NOT NULL REFERENCES contact ON DELETE CASCADE);
CREATE INDEX contact_email_email ON contact_email (email);
CREATE INDEX contact_email_contact ON contact_email (contact);
