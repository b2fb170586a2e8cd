-- From version 3 to 4: what a parcel's slip and its carrier need; who was addressed.

ALTER TABLE 発送マスター ADD COLUMN 依頼主ID INTEGER;
ALTER TABLE 発送マスター ADD COLUMN 顧客コード TEXT;
ALTER TABLE 発送マスター ADD COLUMN 発店コード TEXT;
ALTER TABLE 発送マスター ADD COLUMN 時間帯 TEXT;
ALTER TABLE 発送マスター ADD COLUMN クール TEXT;
ALTER TABLE 発送マスター ADD COLUMN 個数 INTEGER;
ALTER TABLE 発送マスター ADD COLUMN 出力日 TEXT;

CREATE TABLE 宛名印刷 (
    印刷ID INTEGER PRIMARY KEY,
    納品先ID INTEGER,
    印刷日 TEXT,
    用紙 TEXT,
    版 INTEGER
);

CREATE INDEX 発送マスター_依頼主 ON 発送マスター (依頼主ID);
CREATE INDEX 発送マスター_伝票 ON 発送マスター (伝票ID);
CREATE INDEX 発送マスター_送り状番号 ON 発送マスター (送り状番号);
CREATE INDEX 宛名印刷_納品先 ON 宛名印刷 (納品先ID, 印刷日);
