-- A routine that cannot be read costs only itself: the tables after it are built.
CREATE TABLE first_t (id INT PRIMARY KEY);

DELIMITER ;;
CREATE PROCEDURE broken() BEGIN IF THEN ( ( ;; END ;;
DELIMITER ;
CREATE TABLE after_mysql (id INT PRIMARY KEY);

CREATE FUNCTION unclosed() RETURNS int AS $$ BEGIN RETURN 1; END; $$ LANGUAGE plpgsql;
CREATE TABLE after_pg (id INT PRIMARY KEY);

CREATE OR REPLACE PROCEDURE bad IS BEGIN IF x THEN ( END;
/
CREATE TABLE after_oracle (id INT PRIMARY KEY);

CREATE TRIGGER t1 AFTER INSERT ON first_t BEGIN SELECT 1;
CREATE TABLE after_trigger (id INT PRIMARY KEY);
