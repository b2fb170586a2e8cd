CREATE TABLE 単位 (
    単位ID INTEGER PRIMARY KEY,
    単位 TEXT
);

CREATE TABLE 規格 (
    規格ID INTEGER PRIMARY KEY,
    規格 TEXT
);

CREATE TABLE 社員 (
    社員ID INTEGER PRIMARY KEY,
    社員名 TEXT,
    内線番号 TEXT
);

CREATE TABLE 登録区分 (
    区分ID INTEGER PRIMARY KEY,
    区分名 TEXT
);

CREATE TABLE 発送区分 (
    発送区分ID INTEGER PRIMARY KEY,
    発送区分名 TEXT
);

CREATE TABLE 仕入商品 (
    商品ID INTEGER PRIMARY KEY,
    商品名 TEXT
);

CREATE TABLE 納品商品 (
    商品ID INTEGER PRIMARY KEY,
    商品名 TEXT
);

CREATE TABLE 自社情報 (
    会社ID INTEGER PRIMARY KEY,
    会社名1 TEXT,
    会社名2 TEXT,
    郵便番号 TEXT,
    住所1 TEXT,
    住所2 TEXT,
    TEL1 TEXT,
    TEL2 TEXT,
    FAX TEXT,
    取引銀行1 TEXT,
    取引銀行2 TEXT,
    備考 TEXT
);

CREATE TABLE 納品先 (
    納品先ID INTEGER PRIMARY KEY,
    コード TEXT,
    納品先名1 TEXT,
    納品先名2 TEXT,
    納品先名3 TEXT,
    フリガナ TEXT,
    納品先名キー TEXT,
    区分ID INTEGER,
    郵便番号 TEXT,
    住所1 TEXT,
    住所2 TEXT,
    TEL1 TEXT,
    TEL2 TEXT,
    FAX TEXT,
    メール TEXT,
    メモ TEXT,
    登録日 TEXT,
    更新日 TEXT,
    誕生日 TEXT,
    担当者名 TEXT,
    締め日 INTEGER,
    消費税区分 INTEGER,
    元帳出力 INTEGER
);

CREATE TABLE 仕入先 (
    仕入先ID INTEGER PRIMARY KEY,
    コード TEXT,
    仕入先名1 TEXT,
    仕入先名2 TEXT,
    仕入先名キー TEXT,
    郵便番号 TEXT,
    住所1 TEXT,
    住所2 TEXT,
    TEL1 TEXT,
    TEL2 TEXT,
    FAX TEXT,
    メール TEXT,
    担当者1 TEXT,
    担当者2 TEXT,
    支払方法 TEXT,
    振込先 TEXT,
    消費税区分 INTEGER
);

CREATE TABLE 入出庫マスター (
    ID INTEGER PRIMARY KEY,
    日付 TEXT,
    伝票番号 TEXT,
    相手先ID INTEGER,
    社員ID INTEGER,
    消費税率 REAL,
    備考 TEXT
);

CREATE TABLE 入出庫サブ (
    ID INTEGER,
    商品名 TEXT,
    規格 TEXT,
    数量 REAL,
    単位 TEXT,
    単価 REAL,
    金額 REAL
);

CREATE TABLE 発送マスター (
    発送ID INTEGER PRIMARY KEY,
    受付日 TEXT,
    配達日 TEXT,
    発送区分 TEXT,
    発送方法 TEXT,
    依頼主名1 TEXT,
    依頼主名2 TEXT,
    依頼主郵便番号 TEXT,
    依頼主住所1 TEXT,
    依頼主住所2 TEXT,
    依頼主電話 TEXT,
    依頼主名キー TEXT,
    届先名1 TEXT,
    届先名2 TEXT,
    届先郵便番号 TEXT,
    届先住所1 TEXT,
    届先住所2 TEXT,
    届先電話 TEXT,
    届先名キー TEXT,
    品名 TEXT,
    価格 REAL,
    送料 REAL,
    更新日 TEXT
);

CREATE INDEX 納品先_更新日 ON 納品先 (更新日 DESC, フリガナ, 納品先名キー);
CREATE INDEX 納品先_コード ON 納品先 (コード);
CREATE INDEX 入出庫マスター_相手先 ON 入出庫マスター (相手先ID, 日付);
CREATE INDEX 入出庫マスター_伝票番号 ON 入出庫マスター (伝票番号);
CREATE INDEX 入出庫マスター_日付 ON 入出庫マスター (日付);
CREATE INDEX 入出庫サブ_ID ON 入出庫サブ (ID);
