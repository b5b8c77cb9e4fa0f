CREATE TABLE `my table` ("col 1" INT, [col 2] INT, 'It''s' INT, N'x' INT) ENGINE=InnoDB DEFAULT CHARSET=utf8 MAX_ROWS =10;
CREATE TABLE q (a VARCHAR(5) DEFAULT 'un''closed
