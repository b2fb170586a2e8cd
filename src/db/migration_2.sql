-- From version 1 to 2. What version 1 held stays as it is; schema.sql tells what the new columns are for.

ALTER TABLE 単位 ADD COLUMN 版 INTEGER;
ALTER TABLE 規格 ADD COLUMN 版 INTEGER;
ALTER TABLE 社員 ADD COLUMN 版 INTEGER;
ALTER TABLE 登録区分 ADD COLUMN 版 INTEGER;
ALTER TABLE 発送区分 ADD COLUMN 版 INTEGER;
ALTER TABLE 仕入商品 ADD COLUMN 税区分 INTEGER;
ALTER TABLE 仕入商品 ADD COLUMN 商品コード TEXT;
ALTER TABLE 仕入商品 ADD COLUMN バーコード TEXT;
ALTER TABLE 仕入商品 ADD COLUMN 規格 TEXT;
ALTER TABLE 仕入商品 ADD COLUMN 単位 TEXT;
ALTER TABLE 仕入商品 ADD COLUMN 単価 REAL;
ALTER TABLE 仕入商品 ADD COLUMN 版 INTEGER;
ALTER TABLE 納品商品 ADD COLUMN 税区分 INTEGER;
ALTER TABLE 納品商品 ADD COLUMN 商品コード TEXT;
ALTER TABLE 納品商品 ADD COLUMN バーコード TEXT;
ALTER TABLE 納品商品 ADD COLUMN 規格 TEXT;
ALTER TABLE 納品商品 ADD COLUMN 単位 TEXT;
ALTER TABLE 納品商品 ADD COLUMN 単価 REAL;
ALTER TABLE 納品商品 ADD COLUMN 版 INTEGER;
ALTER TABLE 自社情報 ADD COLUMN 登録番号 TEXT;
ALTER TABLE 自社情報 ADD COLUMN 版 INTEGER;
ALTER TABLE 納品先 ADD COLUMN 敬称 TEXT;
ALTER TABLE 納品先 ADD COLUMN 版 INTEGER;
ALTER TABLE 仕入先 ADD COLUMN 登録番号 TEXT;
ALTER TABLE 仕入先 ADD COLUMN 登録 INTEGER;
ALTER TABLE 仕入先 ADD COLUMN 登録開始日 TEXT;
ALTER TABLE 仕入先 ADD COLUMN 登録終了日 TEXT;
ALTER TABLE 仕入先 ADD COLUMN 版 INTEGER;
ALTER TABLE 入出庫マスター ADD COLUMN 内税 INTEGER;
ALTER TABLE 入出庫マスター ADD COLUMN 摘要 TEXT;
ALTER TABLE 入出庫マスター ADD COLUMN 元伝票 INTEGER;
ALTER TABLE 入出庫マスター ADD COLUMN 完了 INTEGER;
ALTER TABLE 入出庫マスター ADD COLUMN 版 INTEGER;
ALTER TABLE 入出庫マスター ADD COLUMN 種別 TEXT GENERATED ALWAYS AS (CASE WHEN unicode(伝票番号) BETWEEN 65313 AND 65338 OR unicode(伝票番号) BETWEEN 65345 AND 65370 THEN upper(char(unicode(伝票番号) - 65248)) ELSE upper(substr(伝票番号, 1, 1)) END) VIRTUAL;
ALTER TABLE 発送マスター ADD COLUMN 送り状番号 TEXT;
ALTER TABLE 発送マスター ADD COLUMN 納品先ID INTEGER;
ALTER TABLE 発送マスター ADD COLUMN 伝票ID INTEGER;
ALTER TABLE 発送マスター ADD COLUMN 備考1 TEXT;
ALTER TABLE 発送マスター ADD COLUMN 備考2 TEXT;
ALTER TABLE 発送マスター ADD COLUMN 印刷日 TEXT;
ALTER TABLE 発送マスター ADD COLUMN 版 INTEGER;

-- The lines get their key in the order in which they were entered.
ALTER TABLE 入出庫サブ RENAME TO 入出庫サブ_版1;
CREATE TABLE 入出庫サブ (
    ID INTEGER,
    商品名 TEXT,
    規格 TEXT,
    数量 REAL,
    単位 TEXT,
    単価 REAL,
    金額 REAL,
    税区分 INTEGER,
    税率 REAL,
    版 INTEGER,
    明細ID INTEGER PRIMARY KEY
);
INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額)
    SELECT ID, 商品名, 規格, 数量, 単位, 単価, 金額 FROM 入出庫サブ_版1 ORDER BY rowid;
DROP TABLE 入出庫サブ_版1;
CREATE INDEX 入出庫サブ_ID ON 入出庫サブ (ID);

CREATE TABLE 税率 (
    税率ID INTEGER PRIMARY KEY,
    税区分 INTEGER,
    開始日 TEXT,
    終了日 TEXT,
    税率 REAL,
    有効 INTEGER,
    版 INTEGER
);

CREATE TABLE 発行控 (
    発行ID INTEGER PRIMARY KEY,
    種類 TEXT,
    番号 TEXT,
    日付 TEXT,
    伝票種別 TEXT,
    相手先ID INTEGER,
    相手先名 TEXT,
    税込金額 REAL,
    発行日時 TEXT,
    社員名 TEXT,
    訂正元 INTEGER,
    取消日 TEXT,
    ハッシュ TEXT,
    内容 BLOB
);

CREATE TABLE 版数 (
    版数ID INTEGER PRIMARY KEY,
    最終 INTEGER
);

DROP INDEX IF EXISTS 入出庫マスター_相手先;
CREATE INDEX 入出庫マスター_相手先 ON 入出庫マスター (相手先ID, 種別, 日付);
CREATE INDEX 入出庫マスター_種別 ON 入出庫マスター (種別, 日付, 相手先ID);
CREATE INDEX 入出庫マスター_未完了 ON 入出庫マスター (ID) WHERE 完了 = 0;
CREATE INDEX 発送マスター_受付日 ON 発送マスター (受付日);
CREATE INDEX 発送マスター_発送区分 ON 発送マスター (発送区分);
CREATE INDEX 発送マスター_納品先 ON 発送マスター (納品先ID);
CREATE INDEX 発送マスター_名キー ON 発送マスター (依頼主名キー, 届先名キー);
CREATE INDEX 発行控_日付 ON 発行控 (日付);
CREATE INDEX 発行控_税込金額 ON 発行控 (税込金額);
CREATE INDEX 発行控_相手先 ON 発行控 (相手先ID, 日付);

INSERT INTO 版数 (版数ID, 最終) VALUES (1, 0);
INSERT INTO 税率 (税率ID, 税区分, 開始日, 終了日, 税率, 有効) VALUES
    (1, 0, '1989-04-01', '1997-03-31', 3, 1),
    (2, 0, '1997-04-01', '2014-03-31', 5, 1),
    (3, 0, '2014-04-01', '2019-09-30', 8, 1),
    (4, 0, '2019-10-01', NULL, 10, 1),
    (5, 1, '2019-10-01', NULL, 8, 1),
    (6, 2, '2019-10-01', NULL, 8, 1),
    (7, 1, '2027-04-01', '2029-03-31', 1, 0);
