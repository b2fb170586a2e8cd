-- From version 2 to 3: receipts from the cash book and from a bank's file; issued documents by number.

CREATE TABLE 入金取込 (
    取込ID INTEGER PRIMARY KEY,
    行キー TEXT,
    ファイル TEXT,
    日付 TEXT,
    名義 TEXT,
    名義キー TEXT,
    金額 REAL,
    伝票ID INTEGER,
    伝票番号 TEXT,
    取込日時 TEXT,
    版 INTEGER
);

CREATE INDEX 発行控_番号 ON 発行控 (番号);
CREATE INDEX 発行控_訂正元 ON 発行控 (訂正元);
CREATE INDEX 入金取込_行キー ON 入金取込 (行キー);
CREATE INDEX 入金取込_名義キー ON 入金取込 (名義キー);
