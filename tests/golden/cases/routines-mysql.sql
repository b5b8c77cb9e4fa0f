-- Routines, triggers and events of a MySQL dump: no model object, no record.
CREATE TABLE account (id INT NOT NULL PRIMARY KEY, balance DECIMAL(10,2), note VARCHAR(40));

DELIMITER ;;
CREATE DEFINER=`admin`@`%` PROCEDURE transfer(IN src INT, OUT done VARCHAR(10), amount DECIMAL(10,2))
    MODIFIES SQL DATA
    COMMENT 'moves money; logs it'
main: BEGIN
    DECLARE finished INT DEFAULT 0;
    DECLARE cur CURSOR FOR SELECT id FROM account WHERE note = 'a;b';
    DECLARE CONTINUE HANDLER FOR NOT FOUND SET finished = 1;
    IF amount < 0 THEN
        SIGNAL SQLSTATE '45000' SET MESSAGE_TEXT = 'negative; refused';
    ELSEIF amount = 0 THEN
        LEAVE main;
    END IF;
    read_loop: LOOP
        FETCH cur INTO src;
        IF finished THEN LEAVE read_loop; END IF;
        WHILE amount > 0 DO SET amount = amount - 1; END WHILE;
        REPEAT SET amount = amount + 1; UNTIL amount > 10 END REPEAT;
        CASE amount WHEN 1 THEN SET done = 'one'; ELSE BEGIN SET done = 'many'; END; END CASE;
    END LOOP;
    SET done = CASE WHEN amount > 0 THEN 'yes' ELSE 'no' END;
END ;;
DELIMITER ;

DELIMITER $$
CREATE FUNCTION half(x INT) RETURNS INT DETERMINISTIC
BEGIN
    RETURN x / 2;
END$$
CREATE TRIGGER account_bi BEFORE INSERT ON account FOR EACH ROW SET NEW.note = 'new; row'$$
DELIMITER ;

DELIMITER //
CREATE EVENT nightly ON SCHEDULE EVERY 1 DAY DO BEGIN DELETE FROM account WHERE balance = 0; END //
DELIMITER ;

/*!50003 CREATE*/ /*!50017 DEFINER=`root`@`localhost`*/ /*!50003 TRIGGER account_au AFTER UPDATE ON account FOR EACH ROW BEGIN
  IF NEW.balance <> OLD.balance THEN SET @changed = 1; END IF;
END */;;

CREATE TABLE ledger (id INT PRIMARY KEY, account_id INT REFERENCES account (id));
